#include <CommandProcessor/core/Catalogue.h>
#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/output/Output.h>

#include <fmt/format.h>

namespace poker::cmdproc {

void addList(CLI::App& program, Action& action) {
  CLI::App& list = *program.add_subcommand("list", "all command classes: family, code, class, direction, handler");
  list.callback([&action] {
    action = [] {
      Output output;
      output.line(fmt::format("{:>6}  {:>4}  {:<28}  {:<16}  {}", "family", "code", "class", "direction", "handler"));
      for (const CommandDescription& row : commandCatalogue()) {
        const std::string handler =
            row.handler.empty() ? "-"
                                : fmt::format("{}::{}", std::string_view(row.processor), std::string_view(row.handler));
        output.line(fmt::format("{:>6}  {:>4}  {:<28}  {:<16}  {}", static_cast<unsigned>(row.family), row.code,
                                row.name, toText(row.direction), handler));
      }
      output.flush();
      return ExitStatus::Clean;
    };
  });
}

}  // namespace poker::cmdproc
