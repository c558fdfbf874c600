#pragma once

#include <CommandProcessor/commands/ClMiscUserBased.h>
#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/CommonTypes.h>
#include <CommandProcessor/wire/Int2StringSer.h>
#include <CommandProcessor/wire/RawDataHolder.h>

namespace poker {

/// A user sends the registration form. Answered by SrvRegistrationOk or SrvRegistrationFail.
class COMMANDPROCESSOR_API ClMakeNewAccount final : public Command<ClMakeNewAccount, ClMiscUserBased> {
 public:
  /// Copies all three.
  /// @param rawData     bytes of the client's own about the machine; the server stores them as they are
  /// @param properties  what else the client tells, at most 255 entries; client and server agree on the keys
  void init(const CommonTypes::NewAccountInfo& accountInfo, RawDataHolder& rawData, const Int2StringSer& properties);

  const CommonTypes::NewAccountInfo& accountInfo() const { return accountInfo_; }
  const RawDataHolder& rawData() const { return rawData_; }
  const Int2StringSer& properties() const { return properties_; }

 private:
  friend FieldAccess;
  ClMakeNewAccount() = default;
  static void fields(auto& self, auto&& field);

  CommonTypes::NewAccountInfo accountInfo_;
  Int2StringSer properties_;
  RawDataHolder rawData_;
};

}  // namespace poker
