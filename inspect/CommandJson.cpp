#include <inspect/CommandFields.h>
#include <inspect/CommandJson.h>
#include <inspect/PlayerText.h>

#include <stdexcept>

namespace poker {

std::string commandJson(const PokerCommandI& command, JsonSecrets secrets, std::string_view more) {
  const CommandFields* fields = CommandFields::of(command);
  if (fields == nullptr) throw std::invalid_argument("commandJson: no command of the catalogue");
  FieldsToJson visitor(secrets);
  fields->visit(command, visitor);
  std::string json = "{\"command\":\"";
  json.append(fields->description->name) += "\",\"fields\":";
  json += visitor.take();
  if (const auto text = playerText(command, secrets)) appendJsonString(json.append(",\"text\":"), *text);
  if (!more.empty()) json.append(",") += more;
  return json += '}';
}

}  // namespace poker
