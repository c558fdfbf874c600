#include <CommandProcessor/commands/account/SrvUserWonPromotion.h>
#include <examples/holdem/game/CardText.h>
#include <examples/holdem/server/bank/Query.h>
#include <examples/holdem/server/promotions/HighHands.h>
#include <examples/holdem/shared/LogLine.h>
#include <inspect/CommandText.h>

#include <array>
#include <bit>
#include <span>
#include <utility>

namespace poker::holdem {
namespace {

/// Two pair, aces and kings with a queen.
const std::array<Card, 5> kToBeat = {Card(Card::Suit::Spade, Card::Rank::Ace), Card(Card::Suit::Heart, Card::Rank::Ace),
                                     Card(Card::Suit::Spade, Card::Rank::King),
                                     Card(Card::Suit::Heart, Card::Rank::King),
                                     Card(Card::Suit::Spade, Card::Rank::Queen)};

/// Those five of the cards that are worth `value`, what all of them are worth together.
std::array<Card, 5> bestFive(std::span<const Card> cards, HandValue value) {
  std::array<Card, 5> five;
  for (unsigned chosen = 0; chosen < 1u << cards.size(); ++chosen) {
    if (std::popcount(chosen) != 5) continue;
    std::size_t count = 0;
    for (std::size_t i = 0; i < cards.size(); ++i) {
      if ((chosen >> i & 1) != 0) five[count++] = cards[i];
    }
    if (HandValue::best(five) == value) break;
  }
  return five;
}

std::vector<Card> cardsOf(const std::string& text) {
  auto cards = cardsFromText(text);
  if (!cards || cards->size() != 5) throw BankError("the cards of a promotion's highest hand cannot be read");
  return std::move(*cards);
}

}  // namespace

struct HighHands::Store {
  using Statement = SQLite::Statement;

  explicit Store(SQLite::Database& own) : database(own) {}

  SQLite::Database& database;

  Statement underWay{database,
                     "SELECT id, prize, hands_left, holder, hand, cards, hands FROM promotion WHERE hands_left > 0"};
  Statement begin{database, "INSERT INTO promotion(prize, hands, hands_left) VALUES(?1, ?2, ?2)"};
  Statement count{database, "UPDATE promotion SET hands_left = ?2 WHERE id = ?1"};
  Statement raise{database, "UPDATE promotion SET holder = ?2, hand = ?3, cards = ?4 WHERE id = ?1"};
  Statement forget{database,
                   "DELETE FROM promotion WHERE id <= "
                   "(SELECT id FROM promotion WHERE hands_left = 0 ORDER BY id DESC LIMIT 1 OFFSET ?1)"};
  Statement name{database, "SELECT name FROM account WHERE id = ?1"};
  Statement all{database,
                "SELECT promotion.id, prize, hands, hands_left, hand, cards, name FROM promotion "
                "LEFT JOIN account ON account.id = holder WHERE hands_left > 0 OR ?1 ORDER BY promotion.id DESC"};
};

HighHands::HighHands(Bank& bank, const HighHandSettings& settings, Outbox& outbox, Audience audience)
    : bank_(bank),
      log_(*Log::getLog("holdem.promotions", LogCategory::Network)),
      settings_(settings),
      outbox_(outbox),
      audience_(std::move(audience)) {
  guarded("looking for a promotion", [&] {
    store_ = std::make_unique<Store>(bank_.database());
    load();
    if (!promotion_ && settings_.prize > kZeroMoney) promotion_ = begin();
  });
}

HighHands::~HighHands() = default;

void HighHands::load() {
  Query row(store_->underWay);
  if (!row.next()) return;
  promotion_ =
      Promotion{row.number(0), row.money(1), static_cast<std::uint32_t>(row.number(2)), HandValue::best(kToBeat)};
  isStartTold_ = row.number(2) < row.number(6);
  if (row.isNull(3)) return;
  promotion_->holder = row.account(3);
  promotion_->hand = static_cast<std::uint64_t>(row.number(4));
  promotion_->cards = row.text(5);
  promotion_->highest = HandValue::best(cardsOf(promotion_->cards));
}

HighHands::Promotion HighHands::begin() {
  Query(store_->begin, settings_.prize, settings_.hands).run();
  const std::int64_t id = store_->database.getLastInsertRowid();
  return {id, settings_.prize, settings_.hands, HandValue::best(kToBeat)};
}

void HighHands::onHandBegins() {
  if (!promotion_ || std::exchange(isStartTold_, true)) return;
  tell({SrvPromoNotify::Started, promotion_->handsLeft});
}

/// @return whether a hand that was turned up is higher than all before
bool HighHands::raise(Promotion& promotion, const FinishedHand& booking, const Hand& hand) {
  constexpr std::size_t kFlop = 3;  // makes five with a player's own two
  if (hand.board().size() < kFlop) return false;
  bool isHigher = false;
  for (std::size_t i = 0; i < hand.players().size(); ++i) {
    const HandPlayer& player = hand.players()[i];
    if (!player.turnedUp) continue;
    const HandValue value = HandValue::best(player.cards, hand.board());
    if (value <= promotion.highest) continue;
    std::vector<Card> cards(player.cards.begin(), player.cards.end());
    cards.insert(cards.end(), hand.board().begin(), hand.board().end());
    promotion.highest = value;
    promotion.holder = booking.players[i].account;
    promotion.hand = booking.number;
    promotion.cards = toText(bestFive(cards, value));
    isHigher = true;
  }
  return isHigher;
}

void HighHands::finishHand(const FinishedHand& booking, const Hand& hand, bool isLast) {
  if (!promotion_) return bank_.finishHand(booking);
  Promotion now = *promotion_;
  now.handsLeft = isLast ? 0 : now.handsLeft - 1;
  const bool isHigher = raise(now, booking, hand);
  const bool isOver = now.handsLeft == 0;
  std::optional<Promotion> next = now;
  std::optional<Win> win;
  bank_.finishHand(booking, [&] {
    Query(store_->count, now.id, now.handsLeft).run();
    if (isHigher) Query(store_->raise, now.id, *now.holder, now.hand, now.cards).run();
    if (!isOver) return;
    win = award(now);
    Query(store_->forget, kRemembered).run();
    next.reset();
    if (!isLast && settings_.prize > kZeroMoney) next = begin();
  });
  promotion_ = next;
  if (isHigher) news_.push_back({SrvPromoNotify::Running, now.handsLeft});
  if (!isOver) return;
  news_.push_back({SrvPromoNotify::Finished, 0, win});
  if (promotion_) news_.push_back({SrvPromoNotify::Started, promotion_->handsLeft});
  isStartTold_ = true;
  logLine(log_, 0, "promotion-over id={} prize={} winner={}", now.id, now.prize.toString(),
          win ? poker::quoted(win->userName) : "nobody");
}

/// Gives the prize to the holder; nobody gets it when there is none.
std::optional<HighHands::Win> HighHands::award(const Promotion& promotion) {
  if (!promotion.holder) return std::nullopt;
  bank_.give(*promotion.holder, {promotion.prize, fmt::format("High hand {}", promotion.id)});
  Query name(store_->name, *promotion.holder);
  name.next();
  return Win{name.text(0), static_cast<std::uint32_t>(promotion.hand), promotion.highest.toString()};
}

void HighHands::tellNews() {
  for (const News& news : std::exchange(news_, {})) tell(news);
}

void HighHands::tell(const News& news) {
  ConnectionsSet listeners;
  audience_(listeners);
  outbox_.add<SrvPromoNotify>(listeners, news.id, 0u, static_cast<int>(news.handsLeft));
  if (!news.win) return;
  outbox_.add<SrvUserWonPromotion>(listeners, news.win->userName, news.win->dealID, news.win->handText);
}

std::vector<PromoHighHandInfo> HighHands::info(bool finishedToo) {
  return guarded("reading promotions", [&] {
    std::vector<PromoHighHandInfo> all;
    for (Query row(store_->all, finishedToo); row.next();) {
      PromoHighHandInfo& info = all.emplace_back();
      info.promoID = static_cast<std::uint32_t>(row.number(0));
      info.title = fmt::format("High hand {}: {} for the highest of {} hands", info.promoID, row.money(1).toString(),
                               row.number(2));
      info.handsLeft = static_cast<std::uint32_t>(row.number(3));
      for (const Card& card : kToBeat) info.cardsToBeat.push_back(card);
      if (row.isNull(4)) continue;
      info.hands.resize(1);
      info.hands[0].dealID = static_cast<std::uint32_t>(row.number(4));
      for (const Card& card : cardsOf(row.text(5))) info.hands[0].cards.push_back(card);
      info.hands[0].userName = row.text(6);
    }
    return all;
  });
}

}  // namespace poker::holdem
