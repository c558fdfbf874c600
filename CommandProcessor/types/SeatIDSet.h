#pragma once

#include <CommandProcessor/types/DbRecord.h>
#include <CommandProcessor/types/TypeWrapper.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>

namespace poker {

/// An ordered set of seats: ascending, no duplicates. There are no more than 256 seat numbers, so all of them have room
/// inside the object and nothing here allocates.
///
///     count (byte), then each seat as a byte, in ascending order
///
/// The one set that cannot travel is that of all 256 numbers, whose count is written as 0 (fitsOnWire() tells).
class COMMANDPROCESSOR_API SeatIDSet : public DbRecord<SeatIDSet> {
 public:
  using value_type = SeatID;
  using const_iterator = const SeatID*;
  using iterator = const_iterator;

  SeatIDSet() = default;
  SeatIDSet(std::initializer_list<SeatID> seats) {
    for (const SeatID& seat : seats) insert(seat);
  }

  const_iterator begin() const { return seats_.data(); }
  const_iterator end() const { return seats_.data() + size_; }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  bool contains(const SeatID& seat) const { return std::binary_search(begin(), end(), seat); }

  void clear() { size_ = 0; }
  /// @return whether the seat is new
  bool insert(const SeatID& seat);
  /// @return whether the seat was there
  bool erase(const SeatID& seat);

  friend bool operator==(const SeatIDSet& a, const SeatIDSet& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
  }

  /// What stands for the seats in other field lists.
  static auto asList(auto& self) { return wire::list<std::uint8_t>(self); }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("seats", asList(self)); }

  std::array<SeatID, 256> seats_;
  std::uint16_t size_ = 0;
};

}  // namespace poker
