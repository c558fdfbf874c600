#include <CommandProcessor/types/Card.h>
#include <hostkit/CommandFactory.h>
#include <inspect/schema/SchemaJson.h>
#include <tools/cmdproc/docs/PageSchema.h>
#include <tools/cmdproc/texts/TextTables.h>

#include <algorithm>

namespace poker::cmdproc {

namespace {

using Json = nlohmann::ordered_json;

Json conditionJson(const FieldCondition& condition) {
  using Test = FieldCondition::Test;
  Json json{{"field", condition.field}};
  if (condition.test == Test::Has) {
    json["has"] = std::to_string(condition.bits);  // 64 bits: no number in JavaScript
  } else {
    json["is"] = condition.test == Test::IsTrue;
  }
  return json;
}

Json fieldsJson(const std::vector<SchemaField>& fields, const RecordTypes* types);

/// @param types  null: records within are written out, where the whole of a record is to be compared
Json fieldJson(const SchemaField& field, const RecordTypes* types) {
  Json json;
  if (!field.name.empty()) json["name"] = field.name;
  json["type"] = typeText(field);
  if (field.size != 0) json["size"] = field.size;
  if (field.count) json["count"] = fieldTypeName(*field.count);
  if (field.belowOneIsNone) json["belowOneIsNone"] = true;
  if (field.most != 0) json["most"] = field.most;
  if (!field.countedBy.empty()) json["countedBy"] = field.countedBy;
  if (field.mask != 0) json["mask"] = field.mask;
  if (field.derived) json["derived"] = true;
  if (field.secret) json["secret"] = true;
  for (const FieldCondition& condition : field.conditions) json["conditions"].push_back(conditionJson(condition));
  if (hasRecordType(field) && types != nullptr) {
    json["type"] = "record";
    json["record"] = types->keyOf(field);
  } else if (!field.fields.empty() && !field.isCard()) {
    json["fields"] = fieldsJson(field.fields, types);
  }
  return json;
}

Json fieldsJson(const std::vector<SchemaField>& fields, const RecordTypes* types) {
  Json json = Json::array();
  for (const SchemaField& field : fields) json.push_back(fieldJson(field, types));
  return json;
}

bool sameRecord(const SchemaField& left, const SchemaField& right) {
  return left.typeName == right.typeName && fieldsJson(left.fields, nullptr) == fieldsJson(right.fields, nullptr);
}

Json numbersJson() {
  Json json;
  for (int i = 0; i <= static_cast<int>(FieldType::Record); ++i) {
    const auto type = static_cast<FieldType>(i);
    if (widthOf(type) == 0) continue;
    json[std::string(fieldTypeName(type))] = {{"size", widthOf(type)}, {"signed", isSigned(type)}};
  }
  return json;
}

/// The texts that hang on the code alone: those that another field changes are not known from the code.
Json textsJson() {
  Json json = Json::object();
  for (const TextTable& table : textTables()) {
    Json& texts = json[table.command];
    texts["field"] = table.codeField;
    texts["codes"] = Json::object();
    for (const TextRow& row : table.rows) {
      if (row.onlyCode) texts["codes"][row.code] = row.variants[0].text;
    }
  }
  return json;
}

}  // namespace

bool hasRecordType(const SchemaField& field) {
  return field.type == FieldType::Record && !field.isPacked() && !field.isDateTimeStatus();
}

RecordTypes::RecordTypes() {
  for (const CommandSchema& schema : CommandSchema::all()) {
    for (const SchemaField& field : schema.fields) collect(field, schema.name());
  }
  std::stable_sort(types_.begin(), types_.end(),
                   [](const RecordType& left, const RecordType& right) { return left.name < right.name; });
}

void RecordTypes::collect(const SchemaField& field, std::string_view command) {
  for (const SchemaField& inner : field.fields) collect(inner, command);
  if (!hasRecordType(field)) return;
  const auto known = std::find_if(types_.begin(), types_.end(),
                                  [&](const RecordType& type) { return sameRecord(*type.sample, field); });
  if (known == types_.end()) {
    const auto namesakes = 1 + std::count_if(types_.begin(), types_.end(), [&](const RecordType& type) {
                             return type.sample->typeName == field.typeName;
                           });
    const std::string key = field.typeName + (namesakes == 1 ? "" : " (" + std::to_string(namesakes) + ")");
    types_.push_back({key, field.typeName, &field, {std::string(command)}});
  } else if (known->usedBy.back() != command) {
    known->usedBy.emplace_back(command);
  }
}

const std::string& RecordTypes::keyOf(const SchemaField& field) const {
  return std::find_if(types_.begin(), types_.end(),
                      [&](const RecordType& type) { return sameRecord(*type.sample, field); })
      ->key;
}

Json pageSchema(const RecordTypes& types) {
  Json json{{"numbers", numbersJson()}};
  for (const RecordType& type : types.all()) json["records"][type.key] = fieldsJson(type.sample->fields, &types);
  for (const CommandSchema& schema : CommandSchema::all()) {
    const CommandDescription& description = *schema.description;
    const CommandClass* received = CommandFactory::find(description.family, description.code);
    Json command{{"name", description.name},
                 {"family", static_cast<std::uint8_t>(description.family)},
                 {"code", description.code}};
    // A pair with two classes is read as the one that a receiver makes of it.
    if (received != nullptr && received->name() != description.name) command["namesake"] = received->name();
    command["fields"] = fieldsJson(schema.fields, &types);
    json["commands"].push_back(std::move(command));
  }
  for (unsigned byte = 0; byte < 256; ++byte) json["cards"].push_back(cardText(static_cast<std::uint8_t>(byte)));
  json["texts"] = textsJson();
  json["batch"] = CommandInfo<SrvCompressedCommands>::name;
  return json;
}

std::string cardText(std::uint8_t byte) {
  const Card card = Card::fromByte(byte);
  if (card.visibility() == Card::Visibility::Hidden) return "face down";
  const std::string face = card.suit() == Card::Suit::None && card.rank() == Card::Rank::None
                               ? "no card"
                               : card.rankToString(false) + " of " + card.suitToString(false) +
                                     (card.suit() <= Card::Suit::Spade && card.suit() != Card::Suit::None ? "s" : "");
  return face + (card.visibility() == Card::Visibility::HiddenOwner ? ", for its owner only" : ", shown to all");
}

}  // namespace poker::cmdproc
