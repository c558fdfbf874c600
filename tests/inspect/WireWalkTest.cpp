#include <CommandProcessor/wire/DeserializeCommandBuf.h>
#include <inspect/schema/WireWalk.h>
#include <tests/inspect/RandomFrame.h>

#include <gtest/gtest.h>

#include <bit>

namespace poker::test {
namespace {

/// What a class itself shows of its fields, one text a value, in wire order.
class ShownValues : public FieldVisitor {
 public:
  std::vector<std::string> values;

  void number(const Field& field, std::int64_t& value) override {
    if (absent_ == 0 && !inCard_) values.push_back(std::string(field.name) + ' ' + std::to_string(value));
  }
  void real(const Field& field, double& value) override {
    add(field, std::to_string(std::bit_cast<std::uint64_t>(value)));
  }
  void text(const Field& field, std::string& value) override { add(field, value); }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override {
    add(field, std::string(value.begin(), value.end()));
  }
  void beginRecord(const Field& field) override { inCard_ = field.typeName == "card" || field.typeName == "flags"; }
  void endRecord(const Field&) override { inCard_ = false; }
  std::size_t beginList(const Field&, std::size_t size) override { return size; }
  void endList(const Field&) override {}
  std::size_t beginMap(const Field&, std::size_t size) override { return size; }
  void endMap(const Field&) override {}
  void beginPart(std::string_view, bool present) override { absent_ += absent_ != 0 || !present ? 1 : 0; }
  void endPart() override { absent_ -= absent_ != 0 ? 1 : 0; }

 private:
  void add(const Field& field, const std::string& value) {
    if (absent_ == 0) values.push_back(std::string(field.name) + ' ' + value);
  }
  int absent_ = 0;
  bool inCard_ = false;
};

/// The same from the bytes, without the class.
std::vector<std::string> walkedValues(const CommandSchema& schema, std::span<const std::uint8_t> command) {
  std::vector<std::string> values;
  const auto failure = walkCommand(schema, command, [&](const WirePiece& piece) {
    const FieldType type = piece.field->type;
    if (piece.isCount || type == FieldType::Zeros || piece.field->isPacked()) return;
    const bool isReal = type == FieldType::Double || type == FieldType::DateTime;
    values.push_back(piece.field->name + ' ' +
                     (type == FieldType::String  ? std::string(piece.text())
                      : type == FieldType::Bytes ? std::string(piece.bytes.begin(), piece.bytes.end())
                      : isReal                   ? std::to_string(piece.bits())
                                                 : std::to_string(piece.number())));
  });
  EXPECT_FALSE(failure) << schema.name() << ": " << failure->path << ' ' << failure->problem;
  return values;
}

// The schema alone leads to the same values as the class does.
TEST(WireWalk, AgreesWithEveryClass) {
  std::mt19937_64 random(61);
  for (const CommandSchema& schema : CommandSchema::all()) {
    const CommandFields& row = *CommandFields::of(schema.name());
    PokerCommandI& command = row.create();
    for (int round = 0; round < 20; ++round) {
      const Bytes frame = randomFrame(schema, random());
      const auto bytes = std::span(frame).subspan(4);
      ShownValues shown;
      DeserializeCommandBuf in(bytes.data() + 2, static_cast<std::uint32_t>(bytes.size() - 2));
      command.deserialize(in);  // what does not travel is as reading leaves it
      row.visit(command, shown);
      ASSERT_EQ(walkedValues(schema, bytes), shown.values) << schema.name();
    }
    command.release();
  }
}

}  // namespace
}  // namespace poker::test
