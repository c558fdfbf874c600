#include <examples/holdem/server/tournament/Tournament.h>

#include <examples/holdem/server/tournament/BlindLevels.h>
#include <examples/holdem/server/tournament/Seating.h>
#include <examples/holdem/shared/LogLine.h>
#include <inspect/CommandText.h>

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace poker::holdem {

namespace {

using Start = SrvTourStartInfo;
using Registration = SrvTourRegisterResult::Reason;
using Withdrawal = SrvTourUnregisterResult::Reason;

/// Between two words about how many players are wanted.
constexpr std::chrono::seconds kBetweenCounts{1};
constexpr std::chrono::seconds kLastNotices[] = {std::chrono::seconds(30), std::chrono::seconds(10)};

/// When the players are told next how long it is to go.
std::optional<Clock::time_point> nextNotice(Clock::time_point end, Clock::time_point now) {
  const auto minutes = std::chrono::ceil<std::chrono::minutes>(end - now) - std::chrono::minutes(1);
  if (minutes > std::chrono::minutes::zero()) return end - minutes;
  for (const std::chrono::seconds before : kLastNotices) {
    if (end - before > now) return end - before;
  }
  return std::nullopt;
}

std::string timeText(std::chrono::system_clock::time_point time) {
  return fmt::format("{:%Y-%m-%d %H:%M:%S} UTC", fmt::gmtime(std::chrono::system_clock::to_time_t(time)));
}

bool isSameName(const std::string& a, const std::string& b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

TourMoneyChooser inCash(const RealMoneyType& amount) { return {amount, kZeroMoney, true}; }

bool pays(const TourMoneyChooser& choice, const RealMoneyType& price) {
  return choice.isEmpty() || (choice.cash() == price && choice.tourMoney() == kZeroMoney);
}

}  // namespace

Tournament::Tournament(asio::io_context& context, TourSettings settings, TourBank& bank, Bank& accounts, Outbox& outbox,
                       TourHost& host)
    : context_(context),
      settings_(std::move(settings)),
      bank_(bank),
      accounts_(accounts),
      outbox_(outbox),
      host_(host),
      log_(*Log::getLog("holdem.tournament", LogCategory::Network)),
      id_(bank.open(settings_.name)),
      board_(id_),
      fund_(bank, settings_, id_),
      clock_(settings_),
      announcedAt_(std::chrono::system_clock::now()),
      opensAt_(Clock::now() + settings_.opensAfter),
      startsAt_(settings_.startsAfter ? Moment(Clock::now() + *settings_.startsAfter) : std::nullopt),
      timer_(context) {
  if (settings_.seed) random_.emplace<std::mt19937_64>(*settings_.seed + id_);
  board_.setText(MultiTourText::Title, settings_.name);
  board_.setText(MultiTourText::Description, settings_.description);
  board_.setText(MultiTourText::Blinds, levelsText(settings_));
  showFund();
}

std::uint64_t Tournament::draw() {
  return std::visit([](auto& generator) { return static_cast<std::uint64_t>(generator()); }, random_);
}

const Tournament::Player* Tournament::player(AccountID account) const {
  const auto place = players_.find(account);
  return place == players_.end() ? nullptr : &place->second;
}

TourTable* Tournament::table(std::uint32_t tableID) {
  for (const OpenTable& open : tables_) {
    if (open.table->settings().gameID == tableID) return open.table.get();
  }
  return nullptr;
}

Tournament::OpenTable& Tournament::find(const TourTable& table) {
  return *std::find_if(tables_.begin(), tables_.end(),
                       [&](const OpenTable& open) { return open.table.get() == &table; });
}

// Telling

template <class T, class... Args>
void Tournament::tellPlayers(Args&&... args) {
  ConnectionsSet to;
  for (const auto& [account, player] : players_) {
    const ConnectionID connection = host_.connectionOf(account);
    if (connection.isValid() && player.place == 0) to.insert(connection);
  }
  outbox_.add<T>(to, std::forward<Args>(args)...);
}

/// Whoever looks at a table.
template <class T, class... Args>
void Tournament::tellTables(Args&&... args) {
  ConnectionsSet to;
  for (const OpenTable& open : tables_) to.insert(open.table->viewers());
  outbox_.add<T>(to, std::forward<Args>(args)...);
}

void Tournament::setStatus(Status status) {
  status_ = status;
  changed();
  ConnectionsSet to;
  for (const OpenTable& open : tables_) to.insert(open.table->viewers());
  for (const auto& broken : brokenTables_) to.insert(broken->viewers());
  for (const auto& [account, player] : players_) {
    const ConnectionID connection = host_.connectionOf(account);
    if (connection.isValid() && (player.place == 0 || isOver())) to.insert(connection);
  }
  outbox_.add<SrvTourTourneyStatus>(to, status, id_);
  logLine(log_, 0, "status tournament={} name={} status={} players={}", id_, quoted(settings_.name),
          static_cast<unsigned>(status), players_.size());
}

// Registration

Registration Tournament::enter(const Account& account, const std::string& city, const std::string& password,
                               const TourMoneyChooser& choice, bool mayPlayInMore) {
  const Player* known = player(account.id);
  if (known != nullptr && known->place == 0 && !isOver()) return Registration::AlreadyRegistered;
  if (hasBegun()) return Registration::AlreadyStarted;
  if (status_ != Status::Registering || isClosing_) return Registration::Failed;
  if (!settings_.password.empty() && password.empty()) return Registration::PasswordNeeded;
  if (password != settings_.password && !settings_.password.empty()) return Registration::WrongPassword;
  const auto isSame = [&](const std::string& name) { return isSameName(name, account.name); };
  if (!settings_.invited.empty() && std::none_of(settings_.invited.begin(), settings_.invited.end(), isSame)) {
    return Registration::NotAllowed;
  }
  if (settings_.mostWins != 0 && bank_.wins(account.id) >= settings_.mostWins) return Registration::WonTournamentsLimit;
  if (!mayPlayInMore) return Registration::ParticipationLimit;
  if (players_.size() >= settings_.maxPlayers || !pays(choice, price().cash)) return Registration::Failed;
  if (!fund_.enter(account.id)) return Registration::FailedAskSupport;
  Player& player = players_[account.id];
  player.account = account;
  player.city = city;
  ++playersLeft_;
  show(player);
  showFund();
  changed();
  return Registration::Registered;
}

Withdrawal Tournament::withdraw(AccountID account) {
  const auto place = players_.find(account);
  if (place == players_.end()) return Withdrawal::Failed;
  if (hasBegun()) return Withdrawal::AlreadyStarted;
  fund_.withdraw(account);
  board_.removePlayer(place->second.account.name);
  players_.erase(place);
  --playersLeft_;
  showFund();
  changed();
  return Withdrawal::Unregistered;
}

void Tournament::welcome(const ConnectionID& client, AccountID account) {
  const Player* entry = player(account);
  if (entry == nullptr || (entry->place != 0 && !isOver())) return;
  outbox_.add<SrvTourTourneyStatus>(client, status_, id_);
  if (status_ > Status::Registering || isCountNew()) return;  // all are about to be told
  const std::int32_t seconds = startsAt_ ? secondsUntil(*startsAt_, Clock::now()) : 0;
  outbox_.add<Start>(client, static_cast<std::int32_t>(playersWanted()), seconds);
}

std::uint32_t Tournament::playersWanted() const {
  return static_cast<std::uint32_t>(settings_.startWith - std::min(settings_.startWith, players_.size()));
}

/// Whether the players know another count of those who are wanted.
bool Tournament::isCountNew() const { return !players_.empty() && playersTold_ != playersWanted(); }

void Tournament::tellCountdown(Clock::time_point now) {
  if (startsAt_ && !noticeAt_) noticeAt_ = nextNotice(*startsAt_, now);
  const bool isNoticeDue = noticeAt_ && now >= *noticeAt_;
  const bool isCountDue = isCountNew() && now >= countTold_ + kBetweenCounts;
  if (!isNoticeDue && !isCountDue) return;
  playersTold_ = playersWanted();
  countTold_ = now;
  if (startsAt_) noticeAt_ = nextNotice(*startsAt_, now);
  tellPlayers<Start>(static_cast<std::int32_t>(playersTold_), startsAt_ ? secondsUntil(*startsAt_, now) : 0);
}

// What has become due

void Tournament::close() {
  isClosing_ = true;
  changed();
}

void Tournament::settle() {
  if (!isDue_ || isOver()) return;
  isDue_ = false;
  while (!isOver() && step(Clock::now())) {
  }
  wakeTables();
  tellLonely();
  armTimer();
}

/// @return whether something was done; something else may be due now
bool Tournament::step(Clock::time_point now) {
  return status_ <= Status::Registering ? stepBeforeStart(now) : stepPlay(now);
}

bool Tournament::stepBeforeStart(Clock::time_point now) {
  if (isClosing_) {
    callOff("The house closes.");
    return true;
  }
  if (status_ == Status::Announced) {
    if (now < opensAt_) return false;
    setStatus(Status::Registering);
    return true;
  }
  const bool isTime = startsAt_ && now >= *startsAt_;
  const bool areEnough = settings_.startWith != 0 && players_.size() >= settings_.startWith;
  if (isTime && players_.size() < settings_.minPlayers) {
    callOff("Too few players have registered.");
  } else if (isTime || areEnough) {
    drawSeats(now);
  } else {
    tellCountdown(now);
    return false;
  }
  return true;
}

bool Tournament::stepPlay(Clock::time_point now) {
  for (OpenTable& open : tables_) {
    if (!open.played || !open.table->isIdle()) continue;
    lookAtHand(open);
    return true;
  }
  if (eliminateOne(now)) return true;
  if (clock_.areExtrasOver() && busts_.empty()) makeFundFinal();
  if (playersLeft_ == 1) {
    finish();
    return true;
  }
  if (isClosing_) {
    if (!allIdle()) return false;
    callOff("The house closes.");
    return true;
  }
  return rearrange() || stepClock(now);
}

bool Tournament::stepClock(Clock::time_point now) {
  if (status_ == Status::Prestarted && now >= *firstHandAt_) {
    clock_.start(now);
    setStatus(Status::Started);
    if (isHostStopping_) halt(now);
  } else if (status_ != Status::Started) {
    return false;
  } else if (clock_.isLevelOver(now)) {
    clock_.endLevel(now);
  } else if (clock_.isStopped() && !clock_.isBreak() && busts_.empty() && allIdle()) {
    clock_.beginBreak(now);
    tellTables<Start>(Start::TimeBreakSpecialPlayerCountValue, clock_.secondsOfBreak(now));
  } else if (clock_.isBreakOver(now)) {
    clock_.endBreak(now);
  } else if (clock_.isNoticeDue(now)) {
    for (const OpenTable& open : tables_) tellNextLevel(open.table->viewers(), now);
    return false;
  } else {
    return false;
  }
  if (clock_.level() > 0) {
    const BlindLevel& blinds = clock_.blinds();
    tellNews(fmt::format("Level {}: blinds {}/{}", clock_.level(), blinds.smallBlind.toString(),
                         blinds.bigBlind.toString()));
  }
  for (OpenTable& open : tables_) open.absentUntil.reset();
  isAllChanged_ = true;
  offerAddOn();
  changed();
  return true;
}

void Tournament::armTimer() {
  Moment next;
  const Clock::time_point now = Clock::now();
  const auto consider = [&](const Moment& moment) {
    if (moment && (!next || *moment < *next)) next = moment;
  };
  if (status_ == Status::Announced) consider(opensAt_);
  if (status_ == Status::Registering) {
    consider(startsAt_);
    consider(noticeAt_);
    if (isCountNew()) consider(countTold_ + kBetweenCounts);
  }
  // While the house closes, it is hands that are waited for.
  if (status_ == Status::Prestarted && !isClosing_) consider(firstHandAt_);
  if (status_ == Status::Started && !isClosing_) {
    consider(clock_.next());
    for (const Bust& bust : busts_) {
      if (bust.rebuyUntil > now)
        consider(bust.rebuyUntil);  // of the others, one may wait for somebody of the same hand
    }
    for (const OpenTable& open : tables_) {
      if (open.absentUntil && *open.absentUntil > now) consider(open.absentUntil);
    }
  }
  timer_.cancel();
  if (!next || isOver()) return;
  timer_.expires_at(*next);
  timer_.async_wait([this](const std::error_code& cancelled) {
    if (!cancelled) outbox_.run([this] { isDue_ = true; });
  });
}

// From the draw of the seats to the last player

void Tournament::drawSeats(Clock::time_point now) {
  setStatus(Status::Prestarted);
  noticeAt_.reset();
  TableSettings usual;
  usual.tournamentID = id_;
  usual.seats = settings_.seats;
  usual.stakes.limit = settings_.limit;
  usual.stakes.smallBlind = clock_.blinds().smallBlind;
  usual.stakes.bigBlind = clock_.blinds().bigBlind;
  usual.minBuyIn = usual.maxBuyIn = kZeroMoney;
  usual.replyTime = settings_.replyTime;
  usual.handPause = settings_.handPause;
  usual.dealsInSitters = true;
  usual.seed = settings_.seed;

  std::vector<Player*> all;
  for (auto& [account, player] : players_) all.push_back(&player);
  chipsInPlay_ = settings_.chips * static_cast<std::uint32_t>(all.size());
  for (const std::vector<std::size_t>& dealt : drawTables(all.size(), settings_.seats, [this] { return draw(); })) {
    ++tablesOpened_;
    usual.gameID = id_ * kTablesEach + tablesOpened_;
    usual.name = fmt::format("{}, table {}", settings_.name, tablesOpened_);
    OpenTable& open = tables_.emplace_back();
    open.table = std::make_unique<TourTable>(context_, usual, outbox_, static_cast<TourTableHost&>(*this));
    for (const std::size_t index : dealt) {
      all[index]->table = open.table.get();
      open.table->seat(all[index]->account, settings_.chips);
      show(*all[index]);
    }
    show(*open.table);
  }
  firstHandAt_ = now + settings_.seatingTime;
  for (const Player* player : all) sendToTable(player->account.id, *player->table);
}

void Tournament::finish() {
  const auto last =
      std::find_if(players_.begin(), players_.end(), [](const auto& each) { return each.second.place == 0; });
  Player& winner = last->second;
  makeFundFinal();
  givePlace(winner);
  std::vector<TourBank::Prize> results;
  for (const auto& [account, player] : players_) results.push_back({account, player.place, player.prize});
  bank_.finish(id_, results);
  tellNews(winner.account.name + " has won.");
  closeTables();
  setStatus(Status::Finished);
}

/// Nobody sits there any more; who looks at them may go on.
void Tournament::closeTables() {
  for (OpenTable& open : tables_) open.table->close();
  for (auto& [account, player] : players_) {
    TourTable* table = std::exchange(player.table, nullptr);
    if (table == nullptr) continue;
    table->unseat(account);
    show(player);
  }
  for (OpenTable& open : tables_) {
    board_.removeTable(open.table->settings().gameID);
    brokenTables_.push_back(std::move(open.table));
  }
  tables_.clear();
  busts_.clear();
}

void Tournament::callOff(const std::string& why) {
  fund_.callOff();
  calledOff_ = fmt::format("Called off: {}", why);
  closeTables();
  for (auto& [account, player] : players_) {
    player.place = 0;
    player.prize = kZeroMoney;
  }
  tellNews(calledOff_);
  showFund();
  // First why: who hears that it is over may go.
  const std::string text = fmt::format("{} is called off: {} What you have paid is paid back.", settings_.name, why);
  tellPlayers<SrvAdminMsg>("Tournament", text.c_str(), std::uint8_t{0});
  setStatus(Status::Finished);
}

void Tournament::suspend() {
  isHostStopping_ = true;
  if (status_ == Status::Started) halt(Clock::now());
}

void Tournament::halt(Clock::time_point now) {
  suspendedAt_ = now;
  clock_.pause(now);
  setStatus(Status::Suspended);
  tellTables<Start>(Start::HostBreakSpecialPlayerCountValue, 0);
}

void Tournament::resume() {
  isHostStopping_ = false;
  if (status_ != Status::Suspended) return;
  const Clock::time_point now = Clock::now();
  clock_.resume(now);
  for (Bust& bust : busts_) {
    if (bust.rebuyUntil != Clock::time_point::min()) bust.rebuyUntil += now - std::max(suspendedAt_, bust.found);
  }
  for (OpenTable& open : tables_) open.absentUntil.reset();
  isAllChanged_ = true;
  setStatus(Status::Started);
  if (clock_.isBreak()) tellTables<Start>(Start::TimeBreakSpecialPlayerCountValue, clock_.secondsOfBreak(now));
}

// Hands

/// Whether somebody sits there without chips, who may still buy more.
bool Tournament::isBustAt(const TourTable& table) const {
  return std::any_of(busts_.begin(), busts_.end(), [&](const Bust& bust) { return bust.table == &table; });
}

bool Tournament::mayBegin(TourTable& table) {
  if (status_ != Status::Started || isClosing_ || clock_.isStopped()) return false;
  OpenTable& open = find(table);
  if (open.played || isBustAt(table) || table.players() < 2) return false;
  if (table.present() != 0) {
    open.absentUntil.reset();
    return true;
  }
  const Clock::time_point now = Clock::now();
  if (!open.absentUntil) {
    open.absentUntil = now + settings_.absentTime;
    isDue_ = true;
    table.tell<Start>(Start::SuspendedSpecialPlayerCountValue, 0);
  }
  return now >= *open.absentUntil;
}

void Tournament::onHandBegins(TourTable& table) {
  OpenTable& open = find(table);
  if (std::exchange(open.level, clock_.level()) == clock_.level()) return;
  const BlindLevel& blinds = clock_.blinds();
  table.setBlinds(blinds.smallBlind, blinds.bigBlind, clock_.level(), clock_.unitsLeft(Clock::now()),
                  settings_.switchType);
}

void Tournament::bookHand(TourTable& table, const FinishedHand& booking, const Hand&) {
  FinishedHand& hand = find(table).played.emplace(booking);
  hand.tournament = id_;
  accounts_.finishHand(hand);
}

void Tournament::onHandOver(TourTable& table) {
  // One that was begun in an earlier level does not count for this one.
  if (find(table).level == clock_.level()) clock_.countHand(table.settings().gameID);
  changed();
}

void Tournament::onEntered(TourTable& table, const ConnectionID& viewer, const Seat* seat) {
  const auto place =
      std::find_if(tables_.begin(), tables_.end(), [&](const OpenTable& each) { return each.table.get() == &table; });
  if (place == tables_.end()) return;
  const Clock::time_point now = Clock::now();
  if (place->level != 0) {
    const Stakes& stakes = table.settings().stakes;
    tellLevel(viewer, {stakes.smallBlind, stakes.bigBlind}, place->level, true, now);
  }
  if (status_ == Status::Prestarted) {
    outbox_.add<Start>(viewer, 0, secondsUntil(*firstHandAt_, now));
  } else if (status_ == Status::Suspended) {
    outbox_.add<Start>(viewer, Start::HostBreakSpecialPlayerCountValue, 0);
  } else if (clock_.isBreak()) {
    outbox_.add<Start>(viewer, Start::TimeBreakSpecialPlayerCountValue, clock_.secondsOfBreak(now));
  } else if (place->isLonely) {
    tellWaitForMove(viewer);
  } else if (place->absentUntil && table.present() == 0) {
    outbox_.add<Start>(viewer, Start::SuspendedSpecialPlayerCountValue, 0);
  } else if (status_ == Status::Started) {
    tellNextLevel(viewer, now);
  }
  if (seat == nullptr) return;
  for (const Bust& bust : busts_) {
    if (bust.account != seat->account || bust.rebuyUntil <= now) continue;
    outbox_.add<OutOfMoney>(viewer, accounts_.balance(bust.account), SrvErrorCode::NotEnoughMoney);
  }
  if (clock_.isAddOnOpen() && !isPrizeAwarded_ && !players_.at(seat->account).hasAddOn) tellAddOn(viewer);
}

template <class Target>
void Tournament::tellLevel(const Target& to, const BlindLevel& blinds, std::int16_t level, bool isSwitching,
                           Clock::time_point now) {
  const bool isFixed = settings_.limit == LimitType::FixedLimit;
  outbox_.add<SrvLevelSwitch>(to, isFixed ? blinds.bigBlind : blinds.smallBlind,
                              isFixed ? blinds.bigBlind * 2 : blinds.bigBlind, level, clock_.unitsLeft(now),
                              settings_.switchType, isSwitching);
}

template <class Target>
void Tournament::tellNextLevel(const Target& to, Clock::time_point now) {
  if (!clock_.hasNextLevel()) return;
  tellLevel(to, clock_.nextBlinds(), static_cast<std::int16_t>(clock_.level() + 1), false, now);
}

/// What was ordered in the hand, and who has nothing left.
void Tournament::lookAtHand(OpenTable& open) {
  TourTable& table = *open.table;
  for (const FinishedHand::Player& played : open.played->players) {
    Player& player = players_.at(played.account);
    const bool hadChips = table.stackOf(played.account) > kZeroMoney;
    if (const std::uint32_t count = std::exchange(player.wantsRebuys, 0); count != 0) {
      answer(player, ExtraMoneyRequest::Rebuy, buy(player, ExtraMoneyRequest::Rebuy, count), hadChips);
    }
    if (std::exchange(player.wantsAddOn, false)) {
      answer(player, ExtraMoneyRequest::AddOn, buy(player, ExtraMoneyRequest::AddOn, 1), hadChips);
    }
  }
  checkChips();
  findBusts(open);
  open.played.reset();
  open.isLookedAt = true;
  show(table);
}

/// @throws std::logic_error  chips are lost or came from nowhere
void Tournament::checkChips() {
  RealMoneyType chips;
  for (OpenTable& open : tables_) chips += open.table->chips();
  if (chips == chipsInPlay_) return;
  throw std::logic_error(fmt::format("tournament {}: {} chips are at its tables, {} were handed out", id_,
                                     chips.toString(), chipsInPlay_.toString()));
}

void Tournament::findBusts(OpenTable& open) {
  const FinishedHand& hand = *open.played;
  std::size_t fromButton = 0;  // the hand's players stand in this order
  for (const FinishedHand::Player& played : hand.players) {
    const std::size_t distance = fromButton++;
    const Player& player = players_.at(played.account);
    if (player.table != open.table.get() || open.table->stackOf(played.account) > kZeroMoney) continue;
    const Clock::time_point now = Clock::now();
    Bust bust{played.account, open.table.get(), hand.number, played.before, distance, now, Clock::time_point::min()};
    const ConnectionID connection = open.table->connectionOf(played.account);
    const bool mayBuy = clock_.areRebuysOpen() && !isPrizeAwarded_ && player.rebuys < settings_.rebuys;
    if (mayBuy && connection.isValid() && accounts_.balance(played.account) >= settings_.rebuyPrice) {
      bust.rebuyUntil = now + settings_.rebuyTime;
      outbox_.add<OutOfMoney>(connection, accounts_.balance(played.account), SrvErrorCode::NotEnoughMoney);
    }
    busts_.push_back(bust);
  }
  // Who had less goes first; of equal ones, who sits farther after the button.
  std::stable_sort(busts_.begin(), busts_.end(), [](const Bust& a, const Bust& b) {
    if (a.hand != b.hand) return a.hand < b.hand;
    return a.before != b.before ? a.before < b.before : a.fromButton > b.fromButton;
  });
}

bool Tournament::eliminateOne(Clock::time_point now) {
  if (status_ != Status::Started && !isClosing_) return false;
  std::uint64_t waits = 0;  // the hand of which somebody may still buy, so that nobody who had more goes before
  for (std::size_t i = 0; i < busts_.size(); ++i) {
    const Bust bust = busts_[i];
    if (now < bust.rebuyUntil && !isPrizeAwarded_) waits = bust.hand;
    if (waits == bust.hand) continue;
    busts_.erase(busts_.begin() + static_cast<std::ptrdiff_t>(i));
    eliminate(bust);
    return true;
  }
  return false;
}

void Tournament::eliminate(const Bust& bust) {
  Player& player = players_.at(bust.account);
  if (playersLeft_ <= fund_.prizes().size()) makeFundFinal();
  givePlace(player);
  isPrizeAwarded_ = isPrizeAwarded_ || player.prize > kZeroMoney;
  player.table = nullptr;
  bust.table->unseat(bust.account);
  board_.removePlayer(player.account.name);
  show(*bust.table);
  changed();
}

void Tournament::givePlace(Player& player) {
  const std::vector<RealMoneyType> prizes = fund_.prizes();
  player.place = static_cast<std::uint32_t>(playersLeft_--);
  if (player.place <= prizes.size()) player.prize = prizes[player.place - 1];
  // The command itself does not say which tournament is meant.
  std::string text =
      player.place == 1
          ? fmt::format("You have won {}, the best of {} players.", settings_.name, players_.size())
          : fmt::format("You are out of {}, in place {} of {}.", settings_.name, player.place, players_.size());
  if (player.prize > kZeroMoney) text += fmt::format(" Your prize is {}.", player.prize.toString());
  outbox_.add<SrvTourPlayerFinished>(host_.connectionOf(player.account.id), text);
  logLine(log_, 0, "place tournament={} place={} name={} prize={}", id_, player.place, quoted(player.account.name),
          player.prize.toString());
}

// Tables

bool Tournament::allIdle() const {
  return std::all_of(tables_.begin(), tables_.end(), [](const OpenTable& open) { return open.table->isIdle(); });
}

/// Tables that wait for what has changed begin their hands.
void Tournament::wakeTables() {
  const bool all = std::exchange(isAllChanged_, false);
  const Clock::time_point now = Clock::now();
  for (OpenTable& open : tables_) {
    const bool isOverdue = open.absentUntil && *open.absentUntil <= now;
    if (std::exchange(open.isLookedAt, false) || all || isOverdue) open.table->proceed();
  }
}

/// One step towards as few and as even tables as possible.
bool Tournament::rearrange() {
  std::vector<TableLoad> loads;
  for (const OpenTable& open : tables_) {
    const bool isFree = open.table->isIdle() && !open.played && !isBustAt(*open.table);
    loads.push_back({open.table->settings().gameID, open.table->players(), isFree});
  }
  if (const auto superfluous = tableToBreak(loads, settings_.seats)) {
    const auto load =
        std::find_if(loads.begin(), loads.end(), [&](const TableLoad& each) { return each.table == *superfluous; });
    if (!load->isIdle) return false;
    breakTable(*superfluous);
    return true;
  }
  const std::optional<PlayerMove> move = nextMove(loads);
  if (!move) return false;
  TourTable& from = *table(move->from);
  TourTable& to = *table(move->to);
  movePlayer(from.nextBigBlind(), from, to);
  return true;
}

TourTable& Tournament::smallestTable() {
  return *std::min_element(tables_.begin(), tables_.end(), [](const OpenTable& a, const OpenTable& b) {
            return a.table->players() < b.table->players();
          })->table;
}

void Tournament::breakTable(std::uint32_t tableID) {
  const auto place = std::find_if(tables_.begin(), tables_.end(),
                                  [&](const OpenTable& open) { return open.table->settings().gameID == tableID; });
  brokenTables_.push_back(std::move(place->table));
  tables_.erase(place);
  TourTable& broken = *brokenTables_.back();
  std::vector<AccountID> movers;
  for (const auto& [account, player] : players_) {
    if (player.table == &broken) movers.push_back(account);
  }
  broken.close();
  for (const AccountID account : movers) movePlayer(account, broken, smallestTable());
  // Who only looked on goes along.
  const ConnectionsSet onlookers = broken.viewers();
  for (const ConnectionID& viewer : onlookers) showSomeTable(viewer);
  board_.removeTable(tableID);
  if (tables_.size() == 1) tellNews("The final table");
  changed();
}

void Tournament::movePlayer(AccountID account, TourTable& from, TourTable& to) {
  Player& player = players_.at(account);
  const bool sitsOut = from.sitsOut(account);
  const RealMoneyType chips = from.unseat(account);
  to.seat(player.account, chips, sitsOut);
  player.table = &to;
  for (Bust& bust : busts_) {
    if (bust.account == account) bust.table = &to;
  }
  sendToTable(account, to);
  show(player);
  show(to);
  if (table(from.settings().gameID) != nullptr) show(from);
  changed();
}

void Tournament::sendToTable(AccountID account, TourTable& table) {
  const ConnectionID connection = host_.connectionOf(account);
  if (!connection.isValid()) return;
  outbox_.add<SrvTourMoveToTable>(connection, table.settings().gameID);
  outbox_.add<SrvTakeSeatInfo>(connection, table.startupInfo(id_, table.seatOf(account)));
  host_.bringTo(connection, table);
}

void Tournament::showSomeTable(const ConnectionID& client) {
  if (tables_.empty()) return;
  TourTable& table = *tables_.front().table;
  outbox_.add<SrvTourMoveToTable>(client, table.settings().gameID);
  host_.bringTo(client, table);
}

void Tournament::bringToTable(AccountID account) {
  const Player* entry = player(account);
  if (entry != nullptr && entry->table != nullptr) sendToTable(account, *entry->table);
}

/// Whoever waits alone for players from other tables is told so.
void Tournament::tellLonely() {
  for (OpenTable& open : tables_) {
    const bool wasLonely = open.isLonely;
    open.isLonely = status_ == Status::Started && open.table->players() == 1 && tables_.size() > 1;
    if (open.isLonely && !wasLonely) tellWaitForMove(open.table->viewers());
  }
}

/// They come when the hands at their tables are over, which nobody can foresee: about a turn's time.
template <class Target>
void Tournament::tellWaitForMove(const Target& to) {
  const auto seconds = std::chrono::ceil<std::chrono::seconds>(settings_.replyTime + settings_.handPause);
  outbox_.add<Start>(to, Start::SusOnMoveSpecialPlayerCountValue, static_cast<std::int32_t>(seconds.count()));
}

// Extra chips

/// Who was given time to buy has it, whatever the clock says.
bool Tournament::mayRebuy(AccountID account) const {
  const auto isPending = [&](const Bust& bust) { return bust.account == account; };
  return clock_.areRebuysOpen() || std::any_of(busts_.begin(), busts_.end(), isPending);
}

void Tournament::offerAddOn() {
  if (isAddOnOffered_ || !clock_.isAddOnOpen() || isPrizeAwarded_) return;
  isAddOnOffered_ = true;
  for (const auto& [account, player] : players_) {
    if (player.place == 0) tellAddOn(host_.connectionOf(account));
  }
}

void Tournament::tellAddOn(const ConnectionID& client) {
  const std::string text = fmt::format("Add-ons are open: {} chips for {}.", settings_.addOnChips.toString(),
                                       settings_.addOnPrice.toString());
  outbox_.add<SrvAdminMsg>(client, "Tournament", text.c_str(), std::uint8_t{0});
}

Tournament::Reply Tournament::whyNotBuy(Player& player, const ClGetExtraMoney& request) const {
  const bool isRebuy = request.getType() == ExtraMoneyRequest::Rebuy;
  const std::uint32_t count = std::max<std::uint32_t>(request.getRebuys(), 1);
  const auto level = static_cast<std::uint32_t>(clock_.level());
  if (clock_.level() == 0) return Reply::NotStarted;
  if (isPrizeAwarded_) return Reply::PrizeAwarded;
  if (isRebuy) {
    if (!mayRebuy(player.account.id)) return Reply::TooLate;
    if (count > settings_.rebuys - player.rebuys) return Reply::NoRebuysLeft;
    if (!pays(request.moneyChooser(), settings_.rebuyPrice * count)) return Reply::Failed;
    return Reply::Done;
  }
  if (request.getType() != ExtraMoneyRequest::AddOn || player.hasAddOn) return Reply::Failed;
  if (settings_.addOnChips == kZeroMoney || !pays(request.moneyChooser(), settings_.addOnPrice)) return Reply::Failed;
  if (clock_.isAddOnOpen()) return Reply::Done;
  return level > settings_.rebuyLevels ? Reply::TooLate : Reply::Failed;
}

void Tournament::getExtraMoney(const ConnectionID& client, AccountID account, const ClGetExtraMoney& request) {
  const auto type = request.getType();
  const auto place = players_.find(account);
  if (place == players_.end() || place->second.place != 0 || isOver()) {
    outbox_.add<SrvGetExtraMoneyReply>(client, type, Reply::Failed, 0u, false);
    return;
  }
  Player& player = place->second;
  if (!request.state()) {
    if (type == ExtraMoneyRequest::AddOn) player.wantsAddOn = false;
    if (type == ExtraMoneyRequest::Rebuy) player.wantsRebuys = 0;
    return answer(player, type, Reply::None, false);
  }
  const Reply reason = whyNotBuy(player, request);
  if (reason != Reply::Done) return answer(player, type, reason, false);
  const std::uint32_t count = std::max<std::uint32_t>(request.getRebuys(), 1);
  if (!player.table->isInHand(account)) {
    const bool hadChips = player.table->stackOf(account) > kZeroMoney;
    answer(player, type, buy(player, type, count), hadChips);
  } else if (type == ExtraMoneyRequest::Rebuy) {
    if (std::exchange(player.wantsRebuys, count) != 0) answer(player, type, Reply::None, false);
  } else if (std::exchange(player.wantsAddOn, true)) {
    answer(player, type, Reply::None, false);
  }
}

/// Between hands, by who may.
Tournament::Reply Tournament::buy(Player& player, ExtraMoneyRequest type, std::uint32_t count) {
  const AccountID account = player.account.id;
  RealMoneyType chips = settings_.addOnChips;
  if (isPrizeAwarded_) return Reply::PrizeAwarded;
  if (type == ExtraMoneyRequest::Rebuy) {
    if (player.table->stackOf(account) >= settings_.chips) return Reply::BalanceTooHigh;
    if (!mayRebuy(account)) return Reply::TooLate;
    if (!fund_.buyRebuys(account, count)) return Reply::NotEnoughMoney;
    player.rebuys += count;
    chips = settings_.rebuyChips * count;
  } else {
    if (!clock_.isAddOnOpen()) return Reply::TooLate;
    if (!fund_.buyAddOn(account)) return Reply::NotEnoughMoney;
    player.hasAddOn = true;
  }
  chipsInPlay_ += chips;
  std::erase_if(busts_, [&](const Bust& bust) { return bust.account == account; });
  player.table->addChips(account, chips);
  show(*player.table);
  showFund();
  changed();
  return Reply::Done;
}

void Tournament::answer(const Player& player, ExtraMoneyRequest type, Reply reason, bool hadChips) {
  const bool flag = type == ExtraMoneyRequest::Rebuy ? hadChips : clock_.isAddOnOpen() && !player.hasAddOn;
  outbox_.add<SrvGetExtraMoneyReply>(host_.connectionOf(player.account.id), type, reason,
                                     settings_.rebuys - player.rebuys, flag);
}

void Tournament::makeFundFinal() {
  if (fund_.isFinal()) return;
  fund_.makeFinal();
  showFund();
}

// What the lobby shows

void Tournament::showFund() {
  board_.setFund(fund_.info());
  board_.setPrizes(fund_.scheme());
}

void Tournament::show(const Player& player) {
  MultiTourPlayerEntry entry;
  entry.tableID = player.table != nullptr ? player.table->settings().gameID : 0;
  entry.player.name = player.account.name;
  entry.player.playerID = static_cast<std::uint32_t>(player.account.id);
  entry.player.city = player.city;
  board_.setPlayer(entry);
}

void Tournament::show(TourTable& table) {
  MultiTourTableEntry entry;
  entry.tableID = table.settings().gameID;
  entry.name = table.settings().name;
  entry.players = static_cast<std::uint32_t>(table.players());
  bool isFirst = true;
  table.forEachStack([&](const std::string&, const RealMoneyType& chips) {
    entry.smallestStack = isFirst ? chips : std::min(entry.smallestStack, chips);
    entry.largestStack = std::max(entry.largestStack, chips);
    isFirst = false;
  });
  board_.setTable(entry);
}

void Tournament::describe(TourListEntry& line) const {
  line.tournamentID = id_;
  line.starts =
      settings_.startsAfter ? COleDateTime::fromTimePoint(announcedAt_ + *settings_.startsAfter) : COleDateTime();
  line.name = settings_.name;
  line.description = settings_.description;
  line.cost.buyIn = inCash(settings_.buyIn);
  line.cost.fee = inCash(settings_.fee);
  line.cost.realMoney = false;
  line.prizes = fund_.info().summary;
  line.gameType = GameType::TexasHoldem;
  line.players = static_cast<std::uint16_t>(players_.size());
  line.maxPlayers = static_cast<std::uint16_t>(settings_.maxPlayers);
  line.tableID = settings_.type() == TOUR_NAMES::TourType::SingleTable && !tables_.empty()
                     ? tables_.front().table->settings().gameID
                     : 0;
  line.status = status_;
  line.skin.clear();
}

TournamentDetailedInfo Tournament::details() const {
  TournamentDetailedInfo info;
  info.description = calledOff_.empty() ? settings_.description : calledOff_;
  info.finished = isOver();
  info.version = changes_;
  std::vector<std::pair<const Player*, RealMoneyType>> shown;
  for (const auto& [account, player] : players_) {
    if (isOver()) {
      shown.emplace_back(&player, player.prize);
    } else if (player.place == 0) {
      shown.emplace_back(&player, player.table != nullptr ? player.table->stackOf(account) : kZeroMoney);
    }
  }
  std::stable_sort(shown.begin(), shown.end(), [&](const auto& a, const auto& b) {
    return isOver() ? a.first->place < b.first->place : a.second > b.second;
  });
  for (const auto& [player, money] : shown) {
    TourPlayerMoneyEntry& entry = info.players.emplace_back();
    entry.player.name = player->account.name;
    entry.player.playerID = static_cast<std::uint32_t>(player->account.id);
    entry.player.city = player->city;
    entry.money = money;
  }
  return info;
}

MultiTourMoneyInfo Tournament::money() const {
  MultiTourMoneyInfo info;
  info.buyInChips = settings_.chips;
  info.buyIn = inCash(settings_.buyIn);
  info.fee = inCash(settings_.fee);
  if (settings_.rebuys != 0) {
    info.rebuyChips = settings_.rebuyChips;
    info.rebuy = inCash(settings_.rebuyPrice);
  }
  if (settings_.addOnChips != kZeroMoney) {
    info.addOnChips = settings_.addOnChips;
    info.addOn = inCash(settings_.addOnPrice);
  }
  return info;
}

MultiStartInfo Tournament::times() const {
  MultiStartInfo info;
  info.registrationStarts = timeText(announcedAt_ + settings_.opensAfter);
  const std::string full = fmt::format("with {} players", settings_.startWith);
  const std::string byTime = settings_.startsAfter ? timeText(announcedAt_ + *settings_.startsAfter) : "";
  info.starts = settings_.startWith == 0 ? byTime : byTime.empty() ? full : fmt::format("{}, or {}", byTime, full);
  info.registrationEnds = info.starts;
  return info;
}

MultiTourneyInfo Tournament::numbers() const {
  MultiTourneyInfo info;
  info.registeredPlayers = static_cast<std::uint32_t>(players_.size());
  info.maxPlayers = static_cast<std::uint32_t>(settings_.maxPlayers);
  info.playersLeft = static_cast<std::uint32_t>(playersLeft_);
  info.tables = static_cast<std::uint32_t>(tables_.size());
  info.paidPlaces = static_cast<std::uint32_t>(fund_.prizes().size());
  info.rebuys = fund_.rebuys();
  info.addOns = fund_.addOns();
  return info;
}

}  // namespace poker::holdem
