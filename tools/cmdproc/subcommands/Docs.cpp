#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/docs/Reference.h>
#include <tools/cmdproc/output/Output.h>

#include <memory>

namespace poker::cmdproc {

void addDocs(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand("docs", "the protocol reference, as a page or as Markdown");
  const auto markdown = std::make_shared<bool>(false);
  CLI::Option* html =
      subcommand.add_flag("--html")->description("one HTML page that needs no network, with a decoder (the default)");
  subcommand.add_flag("--markdown", *markdown, "the same without the decoder, as Markdown")->excludes(html);
  subcommand.callback([&action, markdown] {
    action = [markdown] {
      Output output;
      output.write(*markdown ? referenceMarkdown() : referenceHtml());
      output.flush();
      return ExitStatus::Clean;
    };
  });
}

}  // namespace poker::cmdproc
