#pragma once

#include <CommandProcessor/types/MemberProfileInfo.h>
#include <examples/holdem/server/bank/Bank.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace poker::holdem {

/// A player's picture as others get it.
struct Picture {
  std::string userName;  ///< as it was registered
  std::string code;      ///< of this very image; empty when there is none
  std::string image;     ///< a PNG, JPEG or GIF file, as it was sent
};

/// What players tell of themselves, in the bank's database. Number, name, dates of membership and last visit and the
/// picture's code are the house's. Names are found in upper and lower case.
///
/// Each operation is one transaction, as the bank's are, and throws BankError when the database fails. One thread uses it
/// and the bank at a time. How often a player may write here, the session's frame rate bounds (SessionLimits::rate).
class Members {
 public:
  /// Bytes of each short text: what a MemberProfileInfo carries.
  static constexpr std::size_t kLongestText = 50;
  static constexpr std::size_t kLongestAboutMe = 2000;  ///< bytes
  /// Bytes. The pictures of a whole table, asked for at once, stay below what may be queued for a client
  /// (SessionLimits::outputHard).
  static constexpr std::size_t kLargestPicture = 20 * 1024;

  /// @param bank  must outlive this object
  explicit Members(Bank& bank);
  ~Members();

  /// @return nothing when there is no such player
  std::optional<MemberProfileInfo> profile(const std::string& name);
  /// Keeps what is the player's own. Texts are cut where they are too long, between two characters; a birth date that
  /// cannot be one is none (0).
  /// @return what is kept now
  MemberProfileInfo change(AccountID account, const MemberProfileInfo& wanted);

  /// @return nothing when there is no such player
  std::optional<Picture> picture(const std::string& name);
  /// @param image  a PNG, JPEG or GIF file by its first bytes, of at most kLargestPicture bytes; empty: no picture any more
  /// @return the profile with the new code; nothing for what is no such image, and nothing has changed then
  std::optional<MemberProfileInfo> changePicture(AccountID account, std::string_view image);

  /// The player is here, now.
  void noteVisit(AccountID account);

 private:
  struct Store;

  MemberProfileInfo profileOf(AccountID account);

  std::unique_ptr<Store> store_;
};

}  // namespace poker::holdem
