#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/CommonTypes.h>

#include <cstdint>
#include <string>
#include <vector>

namespace poker {

/// A user logs on. Answered by SrvLogonOk or SrvLogonError.
class COMMANDPROCESSOR_API ClLogon final : public Command<ClLogon> {
 public:
  /// Copies the affiliate's bytes. A null text counts as "".
  /// @param affiliateNumber        bytes that name the affiliate who brought the user, none of them this object's own;
  ///                               null makes it empty, whatever the size
  /// @param affiliateSize          how many; below 1 makes it empty
  /// @param checkPlayMoneyMessage  the client wants to be told of its play money (SrvPlayMoneyMessage)
  /// @param canUseAffID            the server may book the user to the affiliate
  void init(const char* userName, const char* password, const CommonTypes::HardwareInfo& hardwareValues,
            const char* affiliateNumber, int affiliateSize, bool checkPlayMoneyMessage, bool canUseAffID);

  const std::string& userName() const { return userName_; }
  const std::string& password() const { return password_; }
  const CommonTypes::HardwareInfo& hardwareValues() const { return hardwareValues_; }
  /// getAffNumSize() bytes without a NUL behind them, which live until the next init() or deserialize(); may be null
  /// when there are none.
  const char* getAffiliateNumber() const { return reinterpret_cast<const char*>(affiliateNumber_.data()); }
  std::int32_t getAffNumSize() const { return static_cast<std::int32_t>(affiliateNumber_.size()); }
  bool checkPlayMoneyMessage() const { return checkPlayMoneyMessage_; }
  bool getCanUseAffID() const { return canUseAffID_; }

 private:
  friend FieldAccess;
  ClLogon() = default;
  static void fields(auto& self, auto&& field);

  std::string userName_;
  std::string password_;
  CommonTypes::HardwareInfo hardwareValues_;
  std::vector<std::uint8_t> affiliateNumber_;
  bool checkPlayMoneyMessage_ = false;
  bool canUseAffID_ = false;
};

}  // namespace poker
