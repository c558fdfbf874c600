#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/completion/Completion.h>
#include <tools/cmdproc/output/Output.h>

#include <memory>

namespace poker::cmdproc {

void addCompletion(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand("completion", "a script that completes this program's command line");
  const auto shell = std::make_shared<std::string>();
  subcommand.add_option("SHELL", *shell, "the shell that it is for")
      ->type_name("")
      ->required()
      ->check(CLI::IsMember({"bash", "zsh", "fish"}));
  subcommand.callback([&action, &program, shell] {
    action = [&program, shell] {
      Output output;
      output.write(completionScript(programText(program), *shell == "bash"  ? Shell::Bash
                                                          : *shell == "zsh" ? Shell::Zsh
                                                                            : Shell::Fish));
      output.flush();
      return ExitStatus::Clean;
    };
  });
}

}  // namespace poker::cmdproc
