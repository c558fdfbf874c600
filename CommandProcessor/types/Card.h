#pragma once

#include <CommandProcessor/platform/Export.h>

#include <cstdint>
#include <string>

namespace poker {

/// A playing card and how much of it its receiver may see. Travels as one byte that says both, so that who writes a
/// card decides what the reader learns:
///
///     255        hidden; the face does not travel
///     100 + f    hidden from the others, seen by its owner
///     f          shown to all; f = suit * 16 + rank
///
/// Values without a name are held as they are.
class COMMANDPROCESSOR_API Card {
 public:
  enum class Suit : std::uint32_t {
    None = 0,  ///< of a card that lies face down
    Club = 1,
    Diamond = 2,
    Heart = 3,
    Spade = 4,
  };
  enum class Rank : std::uint32_t {
    None = 0,    ///< of a card that lies face down
    LowAce = 1,  ///< an ace, like Ace
    Two = 2,
    Three = 3,
    Four = 4,
    Five = 5,
    Six = 6,
    Seven = 7,
    Eight = 8,
    Nine = 9,
    Ten = 10,
    Jack = 11,
    Queen = 12,
    King = 13,
    Ace = 14,
  };
  /// 2 has no meaning.
  enum class Visibility : std::uint32_t {
    Hidden = 1,
    HiddenOwner = 3,  ///< hidden from the others, seen by its owner
    Shown = 4,
  };

  /// Face down.
  Card() = default;
  Card(Suit suit, Rank rank, Visibility visibility = Visibility::Shown)
      : suit_(suit), rank_(rank), visibility_(visibility) {}

  Suit suit() const { return suit_; }
  Rank rank() const { return rank_; }
  Visibility visibility() const { return visibility_; }
  void setVisibility(Visibility visibility) { visibility_ = visibility; }

  /// The byte that travels. A visibility without a name is written as Shown, a face that has no byte by its low bits.
  std::uint8_t toByte() const {
    if (visibility_ == Visibility::Hidden) return kHiddenByte;
    const auto face = static_cast<std::uint32_t>(suit_) * 16 + static_cast<std::uint32_t>(rank_);
    return static_cast<std::uint8_t>(face + (visibility_ == Visibility::HiddenOwner ? kOwnerBytes : 0));
  }
  /// Every byte is a card, and writes itself as that byte again.
  static Card fromByte(std::uint8_t byte) {
    if (byte == kHiddenByte) return {};
    const bool owner = byte >= kOwnerBytes;
    const std::uint32_t face = byte - (owner ? kOwnerBytes : 0);
    return {static_cast<Suit>(face / 16), static_cast<Rank>(face % 16),
            owner ? Visibility::HiddenOwner : Visibility::Shown};
  }

  /// For logs; tells the face of a hidden card too. "Color:Heart  Sign:Queen Visible: Shown"
  std::string toString() const;
  /// @param label  "Color:Heart" rather than "Heart"
  std::string suitToString(bool label = true) const;
  /// @param label  " Sign:Queen" rather than "Queen"
  std::string rankToString(bool label = true) const;

  friend bool operator==(const Card&, const Card&) = default;

 private:
  static constexpr std::uint8_t kHiddenByte = 255;
  static constexpr std::uint8_t kOwnerBytes = 100;

  Suit suit_ = Suit::None;
  Rank rank_ = Rank::None;
  Visibility visibility_ = Visibility::Hidden;
};

}  // namespace poker
