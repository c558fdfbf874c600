#pragma once

#include <inspect/HandStory.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace poker::holdem {

/// A text is no record of a hand.
class HandRecordError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A hand from its record (HandRecord) as one player may see it: cards of others that were not turned up are left behind,
/// wherever the story goes then.
/// @param viewer  the player's name
/// @throws HandRecordError
HandStory storyOf(const std::string& record, std::string_view viewer);

}  // namespace poker::holdem
