#include <examples/holdem/server/history/RecordStory.h>

#include <examples/holdem/game/CardText.h>
#include <examples/holdem/game/HandValue.h>
#include <examples/holdem/game/Stakes.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <set>
#include <span>
#include <vector>

namespace poker::holdem {

namespace {

using Json = nlohmann::json;

RealMoneyType moneyOf(const Json& amount) { return RealMoneyType::fromHundredths(amount.get<std::int64_t>()); }
SeatID seatOf(const Json& seat) { return seat.get<SeatID::value_type>(); }

std::vector<Card> cardsOf(const Json& text) {
  auto cards = cardsFromText(text.get<std::string>());
  if (!cards) throw HandRecordError("these are no cards");
  return std::move(*cards);
}

/// Reads the parts of a record one after the other into the story.
class Reader {
 public:
  Reader(const Json& record, std::string_view viewer, HandStory& story)
      : record_(record), viewer_(viewer), story_(story) {}

  void read() {
    readHead();
    readPlayers();
    readActions();
    readEnd();
  }

 private:
  void readHead() {
    story_.number = record_.at("hand").get<std::uint64_t>();
    story_.tournament = record_.value("tournament", std::uint32_t{0});
    story_.table = record_.at("table").get<std::string>();
    story_.seats = record_.value("seats", std::size_t{0});
    story_.game = GameType::TexasHoldem;
    story_.limit = record_.at("limit") == "fixed-limit" ? LimitType::FixedLimit : LimitType::NoLimit;
    const Stakes stakes{story_.limit, moneyOf(record_.at("smallBlind")), moneyOf(record_.at("bigBlind")), {}};
    story_.smallBlind = stakes.smallBlind;
    story_.bigBlind = stakes.bigBlind;
    story_.lowBet = stakes.betOf(Street::PreFlop);
    story_.highBet = stakes.betOf(Street::River);
    story_.began = COleDateTime::fromTimeT(record_.at("began").get<std::int64_t>());
    story_.button = seatOf(record_.at("button"));
    story_.over = true;
    board_ = cardsOf(record_.at("board"));
  }

  void readPlayers() {
    for (const Json& player : record_.at("players")) {
      HandStory::Player& told = story_.players.emplace_back();
      told.seat = seatOf(player.at("seat"));
      told.name = player.at("name").get<std::string>();
      told.stack = moneyOf(player.at("stack"));
      left_[told.seat] = told.stack;
      inHand_.push_back(told.seat);
      if (told.name == viewer_) story_.viewer = told.seat;
      const std::vector<Card> cards = cardsOf(player.at("cards"));
      if (player.at("shown").get<bool>()) {
        told.cards = cards;
        if (cards.size() + board_.size() >= 5) told.value = HandValue::best(cards, board_).toString();
      } else {
        for (const Card& card : cards) {
          told.cards.push_back(told.name == viewer_ ? Card(card.suit(), card.rank(), Card::Visibility::HiddenOwner)
                                                    : Card());
        }
      }
    }
    std::sort(story_.players.begin(), story_.players.end(),
              [](const HandStory::Player& a, const HandStory::Player& b) { return a.seat < b.seat; });
  }

  void readActions() {
    constexpr std::size_t kFlop = 3;
    story_.rounds.resize(1);
    for (std::size_t i = 0; i < board_.size(); ++i) {
      if (i == 0 || i >= kFlop) story_.rounds.emplace_back();
      story_.rounds.back().board.push_back(board_[i]);
    }
    for (const Json& action : record_.at("actions")) {
      HandStory::Action told;
      told.seat = seatOf(action.at("seat"));
      told.action = static_cast<UserAction>(action.at("action").get<std::uint32_t>());
      told.amount = moneyOf(action.at("amount"));
      RealMoneyType& left = left_.at(told.seat);
      left += told.action == UserAction::NoAction ? told.amount : kZeroMoney - told.amount;
      told.allIn = left == kZeroMoney;
      if (told.action == UserAction::Post) {
        told.dead = action.contains("dead") ? moneyOf(action["dead"]) : deadOf(told);
      }
      if (told.action == UserAction::Fold) std::erase(inHand_, told.seat);
      switch (told.action) {
        case UserAction::SmallBlind:
        case UserAction::BigBlind:
        case UserAction::Post:
          story_.posts.push_back(told);
          break;
        default:
          story_.rounds.at(action.at("street").get<std::size_t>()).actions.push_back(told);
      }
    }
  }

  /// Old records do not tell it. The big blind is live, and less than that only when a player has no more or owes the small
  /// one alone.
  RealMoneyType deadOf(const HandStory::Action& post) const {
    if (post.amount >= story_.bigBlind) return post.amount - story_.bigBlind;
    return post.allIn ? kZeroMoney : post.amount;
  }

  void readEnd() {
    story_.rake = moneyOf(record_.at("rake"));
    if (record_.contains("finalists")) {
      for (const Json& seat : record_["finalists"]) story_.finalists.push_back(seatOf(seat));
    } else {
      story_.finalists = inHand_;
    }
    const Json& pots = record_.at("pots");
    if (record_.contains("wins")) {
      for (const Json& pot : pots) story_.pots.push_back({moneyOf(pot), {}});
      for (const Json& win : record_["wins"]) {
        story_.pots.at(win.at("pot").get<std::size_t>())
            .wins.push_back({seatOf(win.at("seat")), moneyOf(win.at("amount"))});
      }
    } else {
      // Old records do not tell who won which pot: they are one.
      HandStory::Pot& all = story_.pots.emplace_back();
      for (const Json& pot : pots) all.amount += moneyOf(pot);
      for (const Json& player : record_.at("players")) {
        const RealMoneyType won = moneyOf(player.at("won"));
        if (won > kZeroMoney) all.wins.push_back({seatOf(player.at("seat")), won});
      }
    }
  }

  const Json& record_;
  std::string_view viewer_;
  HandStory& story_;
  std::vector<Card> board_;
  std::map<SeatID, RealMoneyType> left_;  // of the stacks
  std::vector<SeatID> inHand_;            // who has not folded, in the order of the turns
};

}  // namespace

HandStory storyOf(const std::string& record, std::string_view viewer) {
  HandStory story;
  try {
    const Json json = Json::parse(record);
    Reader(json, viewer, story).read();
  } catch (const std::exception& error) {
    throw HandRecordError(fmt::format("no record of a hand: {}", error.what()));
  }
  return story;
}

}  // namespace poker::holdem
