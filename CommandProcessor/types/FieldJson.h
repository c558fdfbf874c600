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

namespace poker {

/// Whether secrets are masked by "***" or stand in clear. A reader that expects masked ones refuses the mask; one that
/// expects them in clear takes "***" for what it says.
enum class JsonSecrets : bool { kMask, kShow };

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

/// Sets the fields of an assigning walk (assignFields) from such an object. Strict: unknown, missing, masked and
/// ill-typed fields and values out of range are refused, by an error that names the field's place: "prizes[2].key: …".
class COMMANDPROCESSOR_API FieldsFromJson : public FieldVisitor {
 public:
  /// @throws FieldValueError  when the text is no JSON object
  explicit FieldsFromJson(std::string_view json, JsonSecrets secrets = JsonSecrets::kMask);
  ~FieldsFromJson() override;

  /// Runs one walk, which must show the fields to the visitor that it is given. The object may be run over many times.
  /// @throws FieldValueError  the fields before the refused one are set
  void run(const std::function<void(FieldVisitor&)>& walk);

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
