#include <inspect/CommandText.h>
#include <inspect/HandStory.h>
#include <inspect/Joined.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <span>
#include <string_view>

namespace poker {

namespace {

/// "[As Kd]"
std::string textOf(std::span<const Card> cards) {
  std::string text = "[";
  for (const Card& card : cards) {
    if (text.size() > 1) text += ' ';
    text += cardText(card);
  }
  return text += ']';
}

std::string textOf(const RealMoneyType& amount) { return moneyText(amount); }

/// Without the quotes, which would be in the way on every line.
std::string escaped(const std::string& name) {
  const std::string text = quoted(name);
  return text.substr(1, text.size() - 2);
}

std::string textOf(GameType game) {
  switch (game) {
    case GameType::TexasHoldem:
      return "Hold'em";
    case GameType::Omaha:
      return "Omaha";
    case GameType::OmahaHiLo:
      return "Omaha Hi/Lo";
    case GameType::SevenCardStud:
      return "Seven Card Stud";
    case GameType::SevenCardStudHiLo:
      return "Seven Card Stud Hi/Lo";
    case GameType::FiveCardDraw:
      return "Five Card Draw";
    case GameType::None:
      break;
  }
  return joined("Game ", std::to_string(static_cast<unsigned>(game)));
}

std::string textOf(LimitType limit) {
  switch (limit) {
    case LimitType::FixedLimit:
      return "Fixed Limit";
    case LimitType::PotLimit:
      return "Pot Limit";
    case LimitType::NoLimit:
      return "No Limit";
    case LimitType::None:
      break;
  }
  return joined("Limit ", std::to_string(static_cast<unsigned>(limit)));
}

/// "2026-10-17 05:20:00 UTC"; empty when there is no time.
std::string textOf(const COleDateTime& time) {
  if (time.GetYear() == COleDateTime::error) return {};
  std::string text = time.toIsoString();
  std::replace(text.begin(), text.end(), 'T', ' ');
  text.back() = ' ';  // the Z
  return text + "UTC";
}

std::string nameOf(std::size_t round, bool inHeading) {
  constexpr std::string_view kHeadings[] = {"HOLE CARDS", "FLOP", "TURN", "RIVER"};
  constexpr std::string_view kStreets[] = {"before the flop", "on the flop", "on the turn", "on the river"};
  if (round < std::size(kStreets)) return std::string(inHeading ? kHeadings[round] : kStreets[round]);
  return joined(inHeading ? "ROUND " : "in round ", std::to_string(round + 1));
}

bool isShown(const Card& card) { return card.visibility() == Card::Visibility::Shown; }
bool isKnown(const Card& card) { return card.visibility() != Card::Visibility::Hidden; }

bool areShown(const HandStory::Player& player) {
  return !player.cards.empty() && std::all_of(player.cards.begin(), player.cards.end(), isShown);
}
bool areKnown(const HandStory::Player& player) {
  return !player.cards.empty() && std::all_of(player.cards.begin(), player.cards.end(), isKnown);
}

/// What lies before the players in one round of betting.
class Bets {
 public:
  void put(const HandStory::Action& action) {
    RealMoneyType& bet = bets_[action.seat];
    bet += action.amount - action.dead;
    level_ = std::max(level_, bet);
  }
  /// Others have to pay so much, though the one who should have put it there did not have it.
  void setLevel(const RealMoneyType& level) { level_ = std::max(level_, level); }
  const RealMoneyType& level() const { return level_; }
  RealMoneyType after(const HandStory::Action& action) { return bets_[action.seat] + action.amount - action.dead; }

 private:
  std::map<SeatID, RealMoneyType> bets_;
  RealMoneyType level_;
};

class Writer {
 public:
  explicit Writer(const HandStory& story) : story_(story) {}

  std::string write() {
    head();
    Bets bets;
    for (const HandStory::Action& post : story_.posts) posts(post, bets);
    for (std::size_t i = 0; i < story_.rounds.size(); ++i) {
      if (i != 0) bets = Bets();
      round(i, bets);
    }
    if (story_.over) end();
    summary();
    return std::move(text_);
  }

 private:
  template <class... Parts>
  void add(const Parts&... parts) {
    ((text_ += parts), ...);
  }
  template <class... Parts>
  void line(const Parts&... parts) {
    add(parts..., '\n');
  }

  const HandStory::Player* find(const SeatID& seat) const {
    const auto isThere = [&](const HandStory::Player& player) { return player.seat == seat; };
    const auto found = std::find_if(story_.players.begin(), story_.players.end(), isThere);
    return found == story_.players.end() ? nullptr : &*found;
  }
  std::string nameOf(const SeatID& seat) const {
    const HandStory::Player* player = find(seat);
    return player != nullptr ? escaped(player->name) : joined("Seat ", std::to_string(seat.value()));
  }

  void head() {
    const bool fixed = story_.limit == LimitType::FixedLimit;
    const std::string time = textOf(story_.began);
    add("Hand #", std::to_string(story_.number), ", ");
    if (story_.tournament != 0) add("Tournament ", std::to_string(story_.tournament), ", ");
    line(textOf(story_.game), ' ', textOf(story_.limit), " (", textOf(fixed ? story_.lowBet : story_.smallBlind), '/',
         textOf(fixed ? story_.highBet : story_.bigBlind), ')', time.empty() ? "" : ", ", time);
    add("Table ", quoted(story_.table));
    if (story_.seats != 0) add(", ", std::to_string(story_.seats), " seats");
    if (story_.button.isValid()) add(", the button is seat ", std::to_string(story_.button.value()));
    line();
    for (const HandStory::Player& player : story_.players) {
      line("Seat ", std::to_string(player.seat.value()), ": ", escaped(player.name), " (", textOf(player.stack),
           " in chips)");
    }
  }

  void posts(const HandStory::Action& post, Bets& bets) {
    add(nameOf(post.seat), ": posts ");
    switch (post.action) {
      case UserAction::SmallBlind:
        text_ += "small blind ";
        break;
      case UserAction::BigBlind:
        text_ += "big blind ";
        bets.setLevel(story_.bigBlind);
        break;
      case UserAction::Ante:
        text_ += "the ante ";
        break;
      case UserAction::KillBlind:
        text_ += "kill blind ";
        break;
      case UserAction::Straddle:
        text_ += "straddle ";
        break;
      default:
        break;
    }
    add(textOf(post.amount));
    if (post.dead > kZeroMoney && post.dead != post.amount) add(", of it ", textOf(post.dead));
    if (post.dead > kZeroMoney) add(" dead");
    line(post.allIn ? " and is all-in" : "");
    bets.put(post);
  }

  void round(std::size_t number, Bets& bets) {
    const HandStory::Round& round = story_.rounds[number];
    add("*** ", poker::nameOf(number, true), " ***");
    if (!round.board.empty()) {
      if (!board_.empty()) add(' ', textOf(board_));
      add(' ', textOf(round.board));
      board_.insert(board_.end(), round.board.begin(), round.board.end());
    }
    line();
    for (const HandStory::Player& player : story_.players) {
      const bool isTold = story_.tellsAllDealt || player.seat == story_.viewer;
      if (number == 0 && isTold && areKnown(player)) {
        line("Dealt to ", escaped(player.name), ' ', textOf(player.cards));
      }
    }
    for (const HandStory::Action& action : round.actions) act(number, action, bets);
  }

  void act(std::size_t round, const HandStory::Action& action, Bets& bets) {
    const std::string name = nameOf(action.seat);
    if (action.action == UserAction::NoAction) {
      line("Uncalled bet (", textOf(action.amount), ") returned to ", name);
      return;
    }
    add(name, ": ");
    switch (action.action) {
      case UserAction::Fold:
        text_ += "folds";
        foldedIn_[action.seat] = round;
        break;
      case UserAction::Check:
        text_ += "checks";
        break;
      case UserAction::Call:
      case UserAction::Bet:
      case UserAction::Raise:
      case UserAction::BigRaise:
      case UserAction::AllIn:
        wager(action, bets);
        break;
      default:
        text_ += actionCodeToStringForChat(action.action);
        if (action.amount > kZeroMoney) add(' ', textOf(action.amount));
    }
    line(action.allIn && action.amount > kZeroMoney ? " and is all-in" : "");
    bets.put(action);
  }

  /// What the chips do, whatever the action was called.
  void wager(const HandStory::Action& action, Bets& bets) {
    const RealMoneyType after = bets.after(action);
    if (after <= bets.level()) {
      add("calls ", textOf(action.amount));
    } else if (bets.level() == kZeroMoney) {
      add("bets ", textOf(action.amount));
    } else {
      add("raises ", textOf(after - bets.level()), " to ", textOf(after));
    }
  }

  bool isFinalist(const SeatID& seat) const {
    return std::find(story_.finalists.begin(), story_.finalists.end(), seat) != story_.finalists.end();
  }
  bool isShowDown() const { return story_.finalists.size() > 1; }

  void shows(const HandStory::Player& player) {
    add(escaped(player.name), ": shows ", textOf(player.cards));
    if (!player.value.empty()) add(" (", escaped(player.value), ')');
    line();
  }

  void end() {
    if (isShowDown()) {
      line("*** SHOW DOWN ***");
      for (const SeatID& seat : story_.finalists) {
        const HandStory::Player* player = find(seat);
        if (player != nullptr && areShown(*player)) {
          shows(*player);
        } else {
          line(nameOf(seat), ": mucks hand");
        }
      }
    }
    for (std::size_t i = 0; i < story_.pots.size(); ++i) {
      for (const HandStory::Win& win : story_.pots[i].wins) {
        line(nameOf(win.seat), " collected ", textOf(win.amount), " from ", potName(i));
      }
    }
    for (const HandStory::Player& player : story_.players) {
      const bool wins = isFinalist(player.seat) && !isShowDown();
      if (areShown(player) && (wins || !isFinalist(player.seat))) {
        shows(player);
      } else if (wins) {
        line(escaped(player.name), ": doesn't show hand");
      }
    }
  }

  std::string potName(std::size_t i) const {
    if (story_.pots.size() == 1) return "pot";
    if (i == 0) return "main pot";
    return story_.pots.size() == 2 ? "side pot" : joined("side pot ", std::to_string(i));
  }

  void summary() {
    line("*** SUMMARY ***");
    if (story_.over) {
      RealMoneyType total = story_.rake;
      for (const HandStory::Pot& pot : story_.pots) total += pot.amount;
      add("Total pot ", textOf(total));
      for (std::size_t i = 0; i < story_.pots.size() && story_.pots.size() > 1; ++i) {
        add(", ", potName(i), ' ', textOf(story_.pots[i].amount));
      }
      line(" | Rake ", textOf(story_.rake));
    } else {
      line("The hand is not over");
    }
    if (!board_.empty()) line("Board ", textOf(board_));
    for (const HandStory::Player& player : story_.players) {
      add("Seat ", std::to_string(player.seat.value()), ": ", escaped(player.name));
      if (player.seat == story_.button) add(" (button)");
      for (const HandStory::Action& post : story_.posts) {
        if (post.seat != player.seat) continue;
        if (post.action == UserAction::SmallBlind) add(" (small blind)");
        if (post.action == UserAction::BigBlind) add(" (big blind)");
      }
      fate(player);
      line();
    }
  }

  /// How the hand ended for the player.
  void fate(const HandStory::Player& player) {
    if (const auto folded = foldedIn_.find(player.seat); folded != foldedIn_.end()) {
      add(" folded ", poker::nameOf(folded->second, false));
      return;
    }
    if (!story_.over || !isFinalist(player.seat)) return;
    RealMoneyType won;
    for (const HandStory::Pot& pot : story_.pots) {
      for (const HandStory::Win& win : pot.wins) won += win.seat == player.seat ? win.amount : kZeroMoney;
    }
    if (areShown(player)) {
      add(" showed ", textOf(player.cards));
      if (won == kZeroMoney) add(" and lost");
    } else if (!isShowDown()) {
      add(" collected ", textOf(won));
      return;
    } else {
      add(" mucked");
      if (areKnown(player)) add(' ', textOf(player.cards));  // the viewer's own
    }
    if (won > kZeroMoney) add(" and won ", textOf(won));
    if (areShown(player) && !player.value.empty()) add(" with ", escaped(player.value));
  }

  const HandStory& story_;
  std::string text_;
  std::vector<Card> board_;
  std::map<SeatID, std::size_t> foldedIn_;  // the round
};

}  // namespace

std::string toText(const HandStory& story) { return Writer(story).write(); }

}  // namespace poker
