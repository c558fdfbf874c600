#include <hostkit/CommandFactory.h>
#include <hostkit/Encode.h>
#include <inspect/schema/SchemaJson.h>
#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/input/Specimen.h>
#include <tools/cmdproc/output/Annotation.h>
#include <tools/cmdproc/output/Output.h>

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace poker::cmdproc {

namespace {

struct Options {
  std::vector<std::string> classes;
  bool json = false;
  bool hex = false;
};

/// What stands behind the type: bounds, counts, conditions.
std::string notesOf(const SchemaField& field) {
  std::string notes;
  const auto add = [&notes](const std::string& note) { notes += (notes.empty() ? "" : "; ") + note; };
  if (field.type == FieldType::String && field.size != 0) add(fmt::format("at most {} characters", field.size));
  if (field.type == FieldType::Bytes || field.type == FieldType::Zeros) {
    if (!field.count) add(fmt::format("{} bytes", field.size));
  }
  if (field.count) {
    add(fmt::format("{} {} in front", fieldTypeName(*field.count), field.type == FieldType::Bytes ? "size" : "count"));
  }
  if (!field.countedBy.empty()) add("as many as " + field.countedBy);
  if (field.most != 0) add(fmt::format("at most {}", field.most));
  if (field.mask != 0) add(fmt::format("mask 0x{:02X}", field.mask));
  if (field.derived) add("computed");
  if (field.secret) add("secret");
  if (!field.when.empty()) add("when " + field.when);
  return notes;
}

struct Row {
  std::string name, type, notes;
};

void addRows(const std::vector<SchemaField>& fields, std::size_t depth, std::vector<Row>& rows) {
  for (const SchemaField& field : fields) {
    const std::string indent(2 * depth, ' ');
    std::string name = field.name.empty() ? "each" : field.name;
    if (field.type == FieldType::Zeros) name = "(zeros)";
    rows.push_back({indent + name, typeText(field), notesOf(field)});
    if (!field.isCard()) addRows(field.fields, depth + 1, rows);
  }
}

std::string table(const CommandSchema& schema, const Paint& paint) {
  const CommandDescription& row = *schema.description;
  std::string text = fmt::format("{}: family {}, code {}, {}", paint.name(row.name), static_cast<unsigned>(row.family),
                                 row.code, toText(row.direction));
  if (!row.handler.empty())
    text += fmt::format(", {}::{}", std::string_view(row.processor), std::string_view(row.handler));
  text += '\n';
  std::vector<Row> rows;
  addRows(schema.fields, 1, rows);
  if (rows.empty()) return text + "  no fields\n";
  std::size_t names = 0, types = 0;
  for (const Row& each : rows) {
    names = std::max(names, each.name.size());
    types = std::max(types, each.type.size());
  }
  for (const Row& each : rows) {
    std::string line = fmt::format("{:<{}}  {:<{}}  {}", each.name, names, each.type, types, each.notes);
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
  }
  return text;
}

/// The bytes of a specimen, field by field.
std::string specimen(const CommandSchema& schema, const Paint& paint) {
  const CommandHandle<> command = makeSpecimen(schema);
  SerializeCommandBuf buffer(4096);
  const CapturedFrame frame{.bytes = encodeCommand(*command, buffer)};
  return fmt::format("{}, a specimen of {} bytes\n", paint.name(schema.name()), frame.bytes.size()) +
         annotationHead(paint) + annotate(frame, JsonSecrets::kShow, paint);
}

ExitStatus describe(const Options& options) {
  for (const std::string& name : options.classes) {
    if (CommandSchema::find(name) == nullptr) {
      throw UsageError("no command class is called " + name + " (cmdproc list shows them all)");
    }
  }
  const auto isWanted = [&names = options.classes](const CommandSchema& schema) {
    return names.empty() || std::find(names.begin(), names.end(), schema.name()) != names.end();
  };
  Output output;
  const Paint paint(wantsColour(stdout));
  bool first = true;
  for (const CommandSchema& schema : CommandSchema::all()) {
    if (!isWanted(schema)) continue;
    if (options.json) {
      output.line(schemaJson(schema));
      continue;
    }
    if (!std::exchange(first, false)) output.line("");
    output.write(options.hex ? specimen(schema, paint) : table(schema, paint));
  }
  output.flush();
  return ExitStatus::Clean;
}

}  // namespace

void addDescribe(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand("describe", "the fields of command classes, in wire order");
  const auto options = std::make_shared<Options>();
  subcommand.add_option("CLASS", options->classes, "command classes; without any, all of them")->type_name("");
  CLI::Option* json = subcommand.add_flag("--json", options->json, "one JSON object a line");
  subcommand.add_flag("--hex", options->hex, "a specimen's bytes: offset, bytes, type, value, meaning of each field")
      ->excludes(json);
  subcommand.callback([&action, options] { action = [options] { return describe(*options); }; });
}

}  // namespace poker::cmdproc
