#pragma once

#include <cstdint>
#include <functional>
#include <utility>

namespace poker::holdem {

/// The numbers by which the lobby and its clients name how new something is that they were told. All lists and details
/// take theirs from one row of numbers, which goes on where it ended when the server is started anew.
///
/// A number is used for all that changes until it has been told to somebody, so that few are needed: with a thousand a
/// second, 32 bits last for weeks; with one, which is what the lobby's own pace takes, for longer than a lifetime.
class VersionNumbers {
 public:
  /// So many are reserved at once.
  static constexpr std::uint32_t kBlock = 1000;
  /// Reserves so many numbers for ever, none of them 0.
  /// @return the first one
  using Reserve = std::function<std::uint32_t(std::uint32_t count)>;

  explicit VersionNumbers(Reserve reserve) : reserve_(std::move(reserve)) {}

  /// The number of what changes now: above all that were told. Throws what reserving throws.
  std::uint32_t forChange() {
    if (!std::exchange(told_, false)) return number_;
    if (left_ == 0) {
      number_ = reserve_(kBlock) - 1;
      left_ = kBlock;
    }
    --left_;
    return ++number_;
  }
  /// Somebody is told of the newest number.
  void tell() { told_ = true; }

 private:
  Reserve reserve_;
  std::uint32_t number_ = 0;
  std::uint32_t left_ = 0;
  bool told_ = true;
};

}  // namespace poker::holdem
