#include <inspect/schema/SchemaJson.h>

#include <array>
#include <bit>
#include <nlohmann/json.hpp>

namespace poker {

namespace {

using Json = nlohmann::ordered_json;

Json fieldsJson(const std::vector<SchemaField>& fields);

/// The bools of a flags byte by their bits where each is one bit, otherwise as fields with masks.
void addFlags(Json& json, const std::vector<SchemaField>& flags) {
  std::array<std::string, 8> bits;
  for (const SchemaField& flag : flags) {
    if (!std::has_single_bit(flag.mask)) {
      Json& of = json["of"] = Json::array();
      for (const SchemaField& each : flags) of.push_back({{"name", each.name}, {"type", "bool"}, {"mask", each.mask}});
      return;
    }
    bits[static_cast<std::size_t>(std::countr_zero(flag.mask))] = flag.name;
  }
  json["bits"] = bits;
}

Json fieldJson(const SchemaField& field) {
  Json json;
  if (!field.name.empty() && field.type != FieldType::Zeros) json["name"] = field.name;
  json["type"] = typeText(field);
  switch (field.type) {
    case FieldType::String:
      if (field.size != 0) json["max"] = field.size;
      break;
    case FieldType::Bytes:
      if (!field.count) json["size"] = field.size;
      break;
    case FieldType::Zeros:
      json["size"] = field.size;
      break;
    default:
      break;
  }
  if (field.count) json["count"] = fieldTypeName(*field.count);
  if (field.type == FieldType::List) {
    json["of"] = fieldJson(field.fields.at(0));
  } else if (field.type == FieldType::Map) {
    json["key"] = fieldJson(field.fields.at(0));
    json["value"] = fieldJson(field.fields.at(1));
    json["key"].erase("name");
    json["value"].erase("name");
  } else if (field.isFlags()) {
    addFlags(json, field.fields);
  } else if (field.type == FieldType::Record && !field.isCard() && !field.isDateTimeStatus()) {
    json["fields"] = fieldsJson(field.fields);
  }
  if (field.derived) json["derived"] = true;
  if (!field.when.empty()) json["when"] = field.when;
  return json;
}

Json fieldsJson(const std::vector<SchemaField>& fields) {
  Json json = Json::array();
  for (const SchemaField& field : fields) json.push_back(fieldJson(field));
  return json;
}

}  // namespace

std::string schemaJson(const CommandSchema& schema) {
  const CommandDescription& description = *schema.description;
  return Json({{"command", description.name},
               {"family", static_cast<std::uint8_t>(description.family)},
               {"code", description.code},
               {"direction", toText(description.direction)},
               {"handler", description.handler},
               {"fields", fieldsJson(schema.fields)}})
      .dump();
}

std::string typeText(const SchemaField& field) {
  return field.type == FieldType::Record ? field.typeName : std::string(fieldTypeName(field.type));
}

}  // namespace poker
