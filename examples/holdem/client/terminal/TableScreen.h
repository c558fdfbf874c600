#pragma once

#include <examples/holdem/client/PlayerClient.h>

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>

namespace poker::holdem {

struct ScreenSettings {
  bool colour = false;
  bool isTerminal = false;  ///< the standard output is one
  bool live = false;        ///< every action at once, in a line of its own; otherwise a line a betting round
  unsigned hands = 0;       ///< how many hands are to be seen; 0: no matter how many
};

/// A client whose table is told in text on the standard output: a block a hand, with the stacks, a line a betting round,
/// the show-down. Unless it is live, a terminal has a line of progress below that, and who watches no terminal finds a line on
/// the standard error at every tenth of the way. All calls come from the thread that runs the io_context.
class TableScreen : protected PlayerEvents {
 public:
  TableScreen(asio::io_context& context, PlayerSettings player, ScreenSettings settings);

  PlayerClient& client() { return client_; }

 protected:
  const TablePicture& picture() const { return client_.picture(); }
  /// How many hands were seen to their end.
  unsigned handsSeen() const { return handsSeen_; }

  /// Prints a line, or several.
  void print(std::string_view text);
  /// The same of what somebody else wrote: escaped, but for line ends.
  void printForeign(std::string_view who, std::string_view text);
  /// Ends the line that is being filled, and takes the line of progress away.
  void finish();
  /// "[A♠ K♥]", in colour if that is wanted.
  std::string toText(std::span<const Card> cards) const;
  std::string bold(std::string_view text) const;

  void onTableState() override;
  void onHandBegins() override;
  void onDealer() override;
  void onAction(const SrvUserActionNotify& command, const ClientSeatState& before) override;
  void onCardsDealt(const SrvCardDeal& command) override;
  void onTurnOf(SeatID seat, std::chrono::seconds time) override;
  void onBoard(const SrvPotCardDeal& command) override;
  void onCardsShown(const SrvShowPlayerCards& command) override;
  void onShowDown(const SrvTUShowDown& command) override;
  void onSeatChange(const SrvUserStateOnTable& command, const ClientSeatState* before) override;
  void onChat(const SrvChatMsg& command) override;
  void onPromotion(const SrvPromoNotify& notice) override;
  void onPromotionWon(const SrvUserWonPromotion& winner) override;
  void onNotice(std::string_view text) override;
  void onRefused(std::string_view why) override;
  void onReconnecting(std::chrono::milliseconds pause) override;

 private:
  std::string nameOf(SeatID seat) const;
  std::string valueOf(std::span<const Card> cards) const;
  std::string tell(const SDInfo& player) const;

  void begin(std::string_view label);
  void add(const std::string& part);
  void flush();
  void write(std::string_view line);
  void setStatus(std::string status);
  std::string progress() const;

  ScreenSettings settings_;
  std::size_t width_;
  std::string line_;  // that is being filled
  bool lineIsEmpty_ = true;
  std::string status_;
  unsigned handsSeen_ = 0;
  PlayerClient client_;
};

}  // namespace poker::holdem
