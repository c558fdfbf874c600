#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/completion/Completion.h>
#include <tools/cmdproc/manual/Manual.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace poker::cmdproc {
namespace {

/// Options and arguments of all kinds that the program's own subcommands could have.
class MadeUpProgram {
 public:
  MadeUpProgram() {
    CLI::App& read = *app.add_subcommand("read", "reads [some] file: the user's");
    read.add_option("FILE", text_, "what to read")->type_name("");
    read.add_option("-s,--size", number_, "how much\nof it")->type_name("BYTES");
    read.add_option("--log", text_, "log")->type_name("FILE");
    read.add_option("--form", text_, "form")->check(CLI::IsMember({"text", "json"}))->type_name("");
    read.add_option("--only", texts_, "classes")->type_name("CLASS");
    read.add_flag("--internal", flag_, "for tests")->group("");
    CLI::App& tell = *app.add_subcommand("tell", "tells");
    tell.add_option("CLASS", text_, "class")->type_name("")->required();
    tell.add_option("CODE", numbers_, "codes")->type_name("")->required();
    CLI::App& write = *app.add_subcommand("write", "writes");
    write.add_option("DIR", text_, "where to")->type_name("")->required();
    write.add_option("FILE", texts_, "what")->type_name("");
  }

  CLI::App app{"made up", "cmdproc"};

 private:
  std::string text_;
  std::vector<std::string> texts_;
  int number_ = 0;
  std::vector<int> numbers_;
  bool flag_ = false;
};

void write(const std::filesystem::path& path, const std::string& text) { std::ofstream(path) << text; }

// In the shells themselves: files, folders, classes and choices where an option or argument takes them, nothing where it
// takes something else.
TEST(Completion, FollowsWhatOptionsTake) {
  MadeUpProgram program;
  const ProgramText text = programText(program.app);
  const std::filesystem::path folder =
      std::filesystem::path(testing::TempDir()) / ("completion-" + std::to_string(std::random_device()()));
  std::filesystem::create_directory(folder);
  write(folder / "cmdproc.bash", completionScript(text, Shell::Bash));
  write(folder / "_cmdproc", completionScript(text, Shell::Zsh));
  write(folder / "cmdproc.fish", completionScript(text, Shell::Fish));
  const std::string line = "\"" CP_TEST_DATA_DIR "/../cmdproc/completions\" --made-up \"" + folder.string() + "\"";
  EXPECT_EQ(std::system(line.c_str()), 0) << line;
  std::filesystem::remove_all(folder);
}

TEST(Manual, RefusesASubcommandWithoutAText) {
  MadeUpProgram program;
  try {
    manualPages(programText(program.app), 0);
    FAIL();
  } catch (const std::logic_error& error) {
    EXPECT_STREQ(error.what(), "the manual has no text for the subcommand read");
  }
}

}  // namespace
}  // namespace poker::cmdproc
