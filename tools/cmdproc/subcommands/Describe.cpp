#include <inspect/schema/SchemaJson.h>
#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/output/Output.h>

#include <memory>
#include <string>
#include <vector>

namespace poker::cmdproc {

namespace {

struct Options {
  std::vector<std::string> classes;
  bool json = false;
};

ExitStatus describe(const Options& options) {
  std::vector<const CommandSchema*> schemas;
  for (const std::string& name : options.classes) {
    const CommandSchema* schema = CommandSchema::find(name);
    if (schema == nullptr) throw UsageError("no command class is called " + name + " (cmdproc list shows them all)");
    schemas.push_back(schema);
  }
  if (schemas.empty()) {
    for (const CommandSchema& schema : CommandSchema::all()) schemas.push_back(&schema);
  }
  Output output;
  for (const CommandSchema* schema : schemas) output.line(schemaJson(*schema));
  output.flush();
  return ExitStatus::Clean;
}

}  // namespace

void addDescribe(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand("describe", "the fields of command classes, in wire order");
  const auto options = std::make_shared<Options>();
  subcommand.add_option("CLASS", options->classes, "command classes; without any, all of them")->type_name("");
  subcommand.add_flag("--json", options->json, "one JSON object a line");
  subcommand.callback([&action, options] { action = [options] { return describe(*options); }; });
}

}  // namespace poker::cmdproc
