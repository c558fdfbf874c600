#pragma once

#include <CommandProcessor/wire/FieldVisitor.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace poker::test {

/// Sets the fields of an assigning walk to random values that each field can carry: numbers of all sizes, among them the
/// smallest and the largest; doubles that are no numbers too; texts, lists and maps from empty to a few elements.
class RandomFields : public FieldVisitor {
 public:
  explicit RandomFields(std::uint64_t seed) : random_(seed) {}

  void number(const Field& field, std::int64_t& value) override {
    const auto bits = random_();
    if (isCard_) {  // not all numbers are cards
      value = field.name == "suit"   ? 1 + static_cast<std::int64_t>(bits % 4)
              : field.name == "rank" ? 2 + static_cast<std::int64_t>(bits % 13)
                                     : 3 + static_cast<std::int64_t>(bits % 2);
      return;
    }
    switch (field.type) {
      case FieldType::Bool:
        value = bits & 1;
        break;
      case FieldType::Byte:
        value = edged<std::uint8_t>(bits);
        break;
      case FieldType::U16:
        value = edged<std::uint16_t>(bits);
        break;
      case FieldType::I16:
        value = edged<std::int16_t>(bits);
        break;
      case FieldType::U32:
        value = edged<std::uint32_t>(bits);
        break;
      case FieldType::I32:
        value = edged<std::int32_t>(bits);
        break;
      default:
        value = edged<std::int64_t>(bits);
    }
  }
  void real(const Field&, double& value) override {
    value = random_() % 4 == 0 ? std::bit_cast<double>(random_()) : static_cast<double>(random_() % 100'000) / 8;
  }
  void text(const Field& field, std::string& value) override {
    value.clear();
    for (auto size = length(field.size != 0 ? field.size : 40); size != 0; --size) {
      value += static_cast<char>(1 + random_() % 255);  // a NUL would end it
    }
  }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override {
    value.resize(field.size != 0 && !field.count ? field.size : length(60));
    for (std::uint8_t& byte : value) byte = static_cast<std::uint8_t>(random_());
  }
  void beginRecord(const Field& field) override { isCard_ = field.typeName == "card"; }
  void endRecord(const Field&) override { isCard_ = false; }
  std::size_t beginList(const Field&, std::size_t) override { return length(5); }
  void endList(const Field&) override {}
  std::size_t beginMap(const Field&, std::size_t) override { return length(5); }
  void endMap(const Field&) override {}
  void beginPart(std::string_view, bool present) override { someAbsent_ = someAbsent_ || !present; }

  /// Whether some of what was set does not travel: the values decide that themselves.
  bool someAbsent() const { return someAbsent_; }

 private:
  template <class T>
  static std::int64_t edged(std::uint64_t bits) {
    const std::uint64_t kind = bits >> 60;
    if (kind == 0) return std::numeric_limits<T>::min();
    if (kind == 1) return static_cast<std::int64_t>(std::numeric_limits<T>::max());
    if (kind < 6) return static_cast<T>(bits % 100);
    return static_cast<T>(bits);
  }
  std::size_t length(std::size_t most) { return random_() % 4 == 0 ? 0 : random_() % (most + 1); }

  std::mt19937_64 random_;
  bool isCard_ = false;
  bool someAbsent_ = false;
};

}  // namespace poker::test
