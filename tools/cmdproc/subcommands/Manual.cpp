#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/manual/Manual.h>
#include <tools/cmdproc/output/Output.h>

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace poker::cmdproc {

namespace {

/// Now, or what a build that is to give the same bytes every time says instead.
std::time_t dateOfPages() {
  const char* given = std::getenv("SOURCE_DATE_EPOCH");
  if (given == nullptr) return std::time(nullptr);
  const std::string_view text(given);
  std::time_t seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw UsageError("SOURCE_DATE_EPOCH is no number of seconds: " + std::string(text));
  }
  return seconds;
}

ExitStatus write(const CLI::App& program, const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  for (const ManualPage& page : manualPages(programText(program), dateOfPages())) {
    std::ofstream file(folder / page.file, std::ios::binary);
    file << page.text;
    file.close();
    if (!file) throw std::runtime_error((folder / page.file).string() + ": cannot be written");
  }
  return ExitStatus::Clean;
}

}  // namespace

void addManual(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand("manual", "the manual pages, as files for man");
  const auto folder = std::make_shared<std::string>();
  subcommand.add_option("DIR", *folder, "folder to write them to; made where there is none")->type_name("")->required();
  subcommand.callback([&action, &program, folder] { action = [&program, folder] { return write(program, *folder); }; });
}

}  // namespace poker::cmdproc
