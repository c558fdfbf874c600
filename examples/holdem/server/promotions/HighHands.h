#pragma once

#include <CommandProcessor/commands/account/SrvPromoNotify.h>
#include <CommandProcessor/core/ConnectionsSet.h>
#include <CommandProcessor/types/PromoHighHandInfo.h>
#include <LogUtil/Log.h>
#include <examples/holdem/game/Hand.h>
#include <examples/holdem/server/Outbox.h>
#include <examples/holdem/server/bank/Bank.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace poker::holdem {

struct HighHandSettings {
  RealMoneyType prize;         ///< zero: the house begins no promotion
  std::uint32_t hands = 1000;  ///< of all tables, at least one
};

/// The house's high-hand promotion: the highest hand of five cards that a player turns up at the end of one of so many
/// hands wins a prize, if it beats two pair, aces and kings with a queen. The first of two equal ones wins; of one hand's
/// the one who sits next after the button. When a promotion is over, the next one begins.
///
/// All of it is in the bank's database, and changes there with the hand: a promotion goes on after a restart, with what it
/// was begun with, also when the house begins none any more. All calls come from the thread of the io_context; what the
/// bank throws passes through.
class HighHands {
 public:
  /// Puts those who are to hear of the promotion into the set.
  using Audience = std::function<void(ConnectionsSet&)>;

  /// So many promotions that are over are remembered.
  static constexpr std::size_t kRemembered = 10;

  /// Begins a promotion when none is under way.
  /// @param bank, outbox  must outlive this object
  HighHands(Bank& bank, const HighHandSettings& settings, Outbox& outbox, Audience audience);
  ~HighHands();

  /// Some table begins a hand. Tells that the promotion has started, the first time.
  void onHandBegins();
  /// Writes a hand that is over, and what becomes of the promotion by it, to the bank in one transaction.
  /// @param booking  its players are those of `hand`, in the same order
  /// @param isLast   the house closes for good: the promotion is over, and no other one begins
  void finishHand(const FinishedHand& booking, const Hand& hand, bool isLast);
  /// Tells what the hands that were finished have changed.
  void tellNews();

  /// The promotion that is under way, and, if wanted, those that are over, the newest first.
  std::vector<PromoHighHandInfo> info(bool finishedToo);

 private:
  struct Store;
  struct Promotion {
    std::int64_t id;
    RealMoneyType prize;
    std::uint32_t handsLeft;
    HandValue highest;  // so far; at first what is to be beaten
    std::optional<AccountID> holder = {};
    std::uint64_t hand = 0;  // the holder's
    std::string cards = {};
  };
  struct Win {
    std::string userName;
    std::uint32_t dealID;
    std::string handText;
  };
  struct News {
    SrvPromoNotify::NotifyID id;
    std::uint32_t handsLeft;
    std::optional<Win> win = {};
  };

  void load();
  Promotion begin();
  bool raise(Promotion& promotion, const FinishedHand& booking, const Hand& hand);
  std::optional<Win> award(const Promotion& promotion);
  void tell(const News& news);

  Bank& bank_;
  Log& log_;
  HighHandSettings settings_;
  Outbox& outbox_;
  Audience audience_;
  std::unique_ptr<Store> store_;
  std::optional<Promotion> promotion_;  // that is under way
  std::vector<News> news_;
  bool isStartTold_ = false;
};

}  // namespace poker::holdem
