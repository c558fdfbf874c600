#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>

namespace poker {

/// A newer client exists: the client shows getMessage() and, when the upgrade is forced, has to close. May come at any
/// time.
class COMMANDPROCESSOR_API SrvNewClientVersionAvail final : public Command<SrvNewClientVersionAvail> {
 public:
  /// Other values are carried as they are and have an empty standard text.
  enum VersionType : std::uint8_t {
    ForcedUpgrade = 0,
    OptionalUpgrade = 1,
  };
  /// Other values are carried as they are and show nothing.
  enum ShowStyle : std::uint8_t {
    CustomTextOnly = 0,
    StandardTextOnly = 1,
    StandardAndCustomText = 2,
  };

  /// @param text  the server's own text; null counts as ""
  void init(VersionType type, ShowStyle style, const char* text);

  VersionType type() const { return type_; }
  /// The text to show: the version type's standard text, the server's own, or the first, "\n\r" and the second. May be
  /// empty.
  std::string getMessage() const;

 private:
  friend FieldAccess;
  SrvNewClientVersionAvail() = default;
  static void fields(auto& self, auto&& field);
  const char* type2String() const;

  VersionType type_ = ForcedUpgrade;
  ShowStyle style_ = CustomTextOnly;
  std::string text_;
};

}  // namespace poker
