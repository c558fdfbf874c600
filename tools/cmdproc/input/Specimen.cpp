#include <hostkit/CommandFactory.h>
#include <inspect/CommandFields.h>
#include <tools/cmdproc/input/Specimen.h>

#include <map>
#include <string>

namespace poker::cmdproc {

namespace {

using Bits = std::map<std::string, std::uint64_t, std::less<>>;

/// The bits that some condition wants to see set, by the field.
void collectBits(const std::vector<SchemaField>& fields, Bits& bits) {
  for (const SchemaField& field : fields) {
    for (const FieldCondition& condition : field.conditions) {
      if (condition.test == FieldCondition::Test::Has) bits[condition.field] |= condition.bits;
    }
    collectBits(field.fields, bits);
  }
}

class SpecimenFields : public FieldVisitor {
 public:
  explicit SpecimenFields(Bits bits) : bits_(std::move(bits)) {}

  void number(const Field& field, std::int64_t& value) override {
    const auto wanted = bits_.find(field.name);
    if (wanted != bits_.end()) {
      value = static_cast<std::int64_t>(wanted->second);
    } else if (isCard_) {
      value = field.name == "suit" ? 4 : field.name == "rank" ? 14 : 4;  // the ace of spades, shown
    } else {
      value = field.type == FieldType::Money ? 1250 : 1;
    }
  }
  void real(const Field& field, double& value) override { value = field.type == FieldType::DateTime ? 45000.5 : 0.5; }
  void text(const Field& field, std::string& value) override { value = field.secret ? "secret" : "text"; }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override {
    value.assign(field.count ? 2 : field.size, 0xA5);
  }
  void beginRecord(const Field& field) override { isCard_ = field.typeName == "card"; }
  void endRecord(const Field&) override { isCard_ = false; }
  std::size_t beginList(const Field&, std::size_t) override { return 1; }
  void endList(const Field&) override {}
  std::size_t beginMap(const Field&, std::size_t) override { return 1; }
  void endMap(const Field&) override {}

 private:
  Bits bits_;
  bool isCard_ = false;
};

}  // namespace

CommandHandle<> makeSpecimen(const CommandSchema& schema) {
  Bits bits;
  collectBits(schema.fields, bits);
  CommandHandle<> command(CommandFactory::find(schema.name())->create());
  SpecimenFields values(std::move(bits));
  CommandFields::of(*command)->assign(*command, values);
  return command;
}

}  // namespace poker::cmdproc
