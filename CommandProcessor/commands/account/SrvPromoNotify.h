#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// How a promotion stands. May come at any time.
class COMMANDPROCESSOR_API SrvPromoNotify final : public Command<SrvPromoNotify> {
 public:
  /// Other values are carried as they are.
  enum NotifyID : std::uint8_t {
    Announced = 0,  ///< begins soon
    Started = 1,
    Running = 2,
    Finished = 3,
  };

  /// @param targetTables  how many tables take part; 0 is all of them
  /// @param rest          hands of the house until it begins (Announced) or ends (Started, Running), 0 when it is
  ///                      Finished; below zero when nobody knows
  void init(NotifyID notifyID, unsigned targetTables, int rest);

  NotifyID getNotifyID() const { return notifyID_; }
  std::uint32_t getTargetTables() const { return targetTables_; }
  std::int32_t getRest() const { return rest_; }

 private:
  friend FieldAccess;
  SrvPromoNotify() = default;
  static void fields(auto& self, auto&& field);

  NotifyID notifyID_ = Announced;
  std::uint32_t targetTables_ = 0;
  std::int32_t rest_ = 0;
};

}  // namespace poker
