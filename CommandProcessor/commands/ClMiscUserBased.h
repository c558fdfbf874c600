#pragma once

#include <CommandProcessor/core/BaseCommand.h>

#include <cstdint>

namespace poker {

/// What the misc commands share that are handled on behalf of a user: that user's id. It never travels, as a client is
/// not asked who it is: the server that receives the command knows the user by the connection, sets the id, and hands
/// the command on in memory. The frame alone travels.
///
/// A command that derives from it (`Command<UpdateHardwareInfo, ClMiscUserBased>`, or with a StringCommand in between)
/// starts its own init() with this one's and its own field list with this one's, so that a pooled object keeps no user.
class COMMANDPROCESSOR_API ClMiscUserBased
    : public BaseCommand<ClMiscUserBased, PokerCommandTmpl<ClientMiscCmdProcessorType>> {
 public:
  /// For no user.
  explicit ClMiscUserBased(MiscCommandType code);
  ~ClMiscUserBased() override;

  /// Empties the connection set and sets the user; 0 is none.
  void init(std::int32_t userID = 0);

  /// 0 is none, as after deserialize().
  std::int32_t userID() const { return userID_; }
  void setUserID(std::int32_t userID) { userID_ = userID; }

 protected:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field.local(self.userID_); }

  std::int32_t userID_ = 0;
};

}  // namespace poker
