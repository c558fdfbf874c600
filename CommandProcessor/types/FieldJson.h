#pragma once

// The fields of a command or record as one JSON object, in wire order:
//
//     numbers up to 32 bits   3                            string       "text", code points U+0000 to U+00FF for its bytes
//     64-bit numbers          "12345678901"                raw bytes    "00FF7A"
//     bool                    true                         list         [element, ...]
//     money                   "12.50", "-0.05", "3"        map          [{"key":...,"value":...}, ...]
//     double, date-time       44250.25                     record       {"name":..., ...}; a flags byte too, of its bools
//     ... that is not finite  "0x7FF8000000000000"         secret       "***" unless asked for
//
// What the format computes (counts, presence flags, zeros) has no place in it. A field that is absent on the wire
// appears with the value that it holds.

#include <CommandProcessor/platform/Export.h>
#include <CommandProcessor/wire/FieldVisitor.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace poker {

/// Whether secrets are masked by "***" or stand in clear. A reader that expects masked ones refuses the mask; one that
/// expects them in clear takes "***" for what it says.
enum class JsonSecrets : bool { kMask, kShow };

/// Appends the text in quotes: ASCII, its bytes as code points U+0000 to U+00FF.
COMMANDPROCESSOR_API void appendJsonString(std::string& out, std::string_view text);

/// Writes the fields of a looking walk (visitFields).
class COMMANDPROCESSOR_API FieldsToJson : public FieldVisitor {
 public:
  explicit FieldsToJson(JsonSecrets secrets = JsonSecrets::kMask) : secrets_(secrets) {}
  ~FieldsToJson() override;

  /// The object of all fields visited so far: ASCII, no line breaks. Then starts over.
  std::string take();

  void number(const Field& field, std::int64_t& value) override;
  void real(const Field& field, double& value) override;
  void text(const Field& field, std::string& value) override;
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override;
  void beginRecord(const Field& field) override;
  void endRecord(const Field& field) override;
  std::size_t beginList(const Field& field, std::size_t size) override;
  void endList(const Field& field) override;
  std::size_t beginMap(const Field& field, std::size_t size) override;
  void beginEntry() override;
  void endEntry() override;
  void endMap(const Field& field) override;

 private:
  void separate();
  void name(const Field& field);
  bool begin(const Field& field);

  std::string object_ = "{";
  JsonSecrets secrets_;
};

/// A parsed JSON object, for whoever finds fields inside a larger one. Copies share what was parsed. Any thread may read.
class COMMANDPROCESSOR_API JsonObject {
 public:
  /// @throws FieldValueError  when the text is no JSON object
  explicit JsonObject(std::string_view json);

  bool has(std::string_view name) const;
  /// The member that is a string; none when there is no such member, or it is none.
  std::optional<std::string> text(std::string_view name) const;
  /// The member that is an object; none when there is no such member, or it is none.
  std::optional<JsonObject> object(std::string_view name) const;
  /// The member that is an array of objects; none when there is no such member, or it is anything else.
  std::optional<std::vector<JsonObject>> objects(std::string_view name) const;

 private:
  friend class FieldsFromJson;
  struct Parsed;
  JsonObject(std::shared_ptr<const Parsed> parsed, const void* value) : parsed_(std::move(parsed)), value_(value) {}

  std::shared_ptr<const Parsed> parsed_;
  const void* value_;  // inside of what was parsed
};

/// Sets the fields of an assigning walk (assignFields) from such an object. Strict: unknown, missing, masked and
/// ill-typed fields and values out of range are refused, by an error that names the field's place: "prizes[2].key: …".
class COMMANDPROCESSOR_API FieldsFromJson : public FieldVisitor {
 public:
  /// @throws FieldValueError  when the text is no JSON object
  explicit FieldsFromJson(std::string_view json, JsonSecrets secrets = JsonSecrets::kMask);
  explicit FieldsFromJson(JsonObject fields, JsonSecrets secrets = JsonSecrets::kMask);
  ~FieldsFromJson() override;

  /// Runs one walk, which must show the fields to the visitor that it is given. The object may be run over many times.
  /// @throws FieldValueError  the fields before the refused one are set
  void run(const std::function<void(FieldVisitor&)>& walk);
  /// The elements of all lists and maps that the last run has handed over. A set or map that holds fewer of them had a
  /// key twice.
  std::size_t elements() const;

  void number(const Field& field, std::int64_t& value) override;
  void real(const Field& field, double& value) override;
  void text(const Field& field, std::string& value) override;
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override;
  void beginRecord(const Field& field) override;
  void endRecord(const Field& field) override;
  std::size_t beginList(const Field& field, std::size_t size) override;
  void endList(const Field& field) override;
  std::size_t beginMap(const Field& field, std::size_t size) override;
  void beginEntry() override;
  void endEntry() override;
  void endMap(const Field& field) override;

 private:
  struct Object;
  std::unique_ptr<Object> object_;
};

/// @param fields  a command or record, anything with visitFields()
template <class T>
std::string fieldsToJson(const T& fields, JsonSecrets secrets = JsonSecrets::kMask) {
  FieldsToJson json(secrets);
  fields.visitFields(json);
  return json.take();
}

/// @param fields  a command or record, anything with assignFields()
/// @throws FieldValueError  as FieldsFromJson
template <class T>
void fieldsFromJson(T& fields, std::string_view json, JsonSecrets secrets = JsonSecrets::kMask) {
  FieldsFromJson(json, secrets).run([&](FieldVisitor& visitor) { fields.assignFields(visitor); });
}

}  // namespace poker
