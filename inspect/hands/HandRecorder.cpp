#include <inspect/CommandText.h>
#include <inspect/hands/HandRecorder.h>

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

namespace poker {

namespace {

constexpr std::uint64_t kSweepEach = 4096;  // commands

bool hasFace(const Card& card) { return card.visibility() != Card::Visibility::Hidden; }
bool sameFace(const Card& a, const Card& b) { return a.suit() == b.suit() && a.rank() == b.rank(); }

/// The same said to others is told once, with the first of them.
void merge(std::vector<HandFinding>& findings) {
  std::stable_sort(findings.begin(), findings.end(),
                   [](const HandFinding& a, const HandFinding& b) { return a.at.command < b.at.command; });
  std::vector<HandFinding> merged;
  for (HandFinding& finding : findings) {
    const auto same = std::find_if(merged.begin(), merged.end(), [&](const HandFinding& other) {
      return other.text == finding.text && other.hand == finding.hand && other.connection != finding.connection;
    });
    if (same != merged.end()) {
      ++same->others;
    } else {
      merged.push_back(std::move(finding));
    }
  }
  findings = std::move(merged);
}

}  // namespace

std::string HandFinding::line() const {
  std::string line;
  if (isAfter) line += "after ";
  line += hand != 0 ? "hand " + std::to_string(hand) : std::string("an unknown hand");
  line += ", table " + quoted(table) + ", command " + std::to_string(at.command) + " at offset " +
          std::to_string(at.offset) + (at.direction == CommandDirection::ClientToServer ? " from " : " to ") +
          (connection.empty() ? std::string("an unknown client") : connection);
  if (others != 0) line += " and " + std::to_string(others) + (others == 1 ? " other" : " others");
  return line += ": " + text;
}

// One hand

std::vector<Card> RecordedHand::cardsOf(const SeatID& seat) const {
  for (const auto& seen : views_) {
    if (seen->view.viewer() != seat) continue;
    const HandView::Player* player = seen->view.find(seat);
    if (player != nullptr && !player->cards.empty() &&
        std::all_of(player->cards.begin(), player->cards.end(), hasFace)) {
      return player->cards;
    }
  }
  return {};
}

HandStory RecordedHand::story() const {
  std::vector<std::vector<Card>> known;
  for (const HandView::Player& player : best_->view.players()) {
    known.push_back(cardsOf(player.seat));
    for (Card& card : known.back()) card.setVisibility(Card::Visibility::HiddenOwner);
  }
  HandStory story = best_->view.story(known);
  story.viewer = SeatID();
  story.tellsAllDealt = true;
  // Only a player's own connection is told that it is a tournament.
  for (const auto& seen : views_) story.tournament = std::max(story.tournament, seen->view.tournament());
  return story;
}

std::optional<HandStory> RecordedHand::storyOf(const SeatID& seat) const {
  for (const auto& seen : views_) {
    const HandView& view = seen->view;
    if (view.viewer() == seat && view.isWhole() && view.isOver() && view.find(seat) != nullptr) return view.story();
  }
  return std::nullopt;
}

std::optional<HandStory> RecordedHand::storyOf(std::string_view name) const {
  for (const auto& seen : views_) {
    const HandView::Player* player = seen->view.find(seen->view.viewer());
    if (player == nullptr || player->name != name) continue;
    if (auto story = storyOf(player->seat)) return story;
  }
  return std::nullopt;
}

void RecordedHand::judge() {
  std::map<std::uint64_t, std::size_t> tellers;  // by what they tell
  const auto isWhole = [](const SeenHand& seen) { return seen.view.isWhole() && seen.view.isOver(); };
  for (const auto& seen : views_) {
    if (isWhole(*seen)) ++tellers[seen->meaning];
  }
  for (const auto& seen : views_) {
    if (!isWhole(*seen)) continue;
    const auto rank = [&](const SeenHand& each) {
      return std::tuple(tellers[each.meaning], each.view.limit() != LimitType::None,
                        SIZE_MAX - each.audit.faults().size());
    };
    if (best_ == nullptr || rank(*seen) > rank(*best_)) best_ = seen.get();
  }
  for (const auto& seen : views_) compare(*seen);
  findDoubles();
  merge(findings_);
}

/// What a connection is told beside the others is its fault; whatever follows from that is not told.
void RecordedHand::compare(const SeenHand& seen) {
  const PublicWord* first = nullptr;
  const PublicWord* other = nullptr;
  const auto& words = seen.words;
  if (best_ != nullptr && best_ != &seen && seen.meaning != best_->meaning) {
    const auto& best = best_->words;
    std::size_t skipped = 0;
    if (!seen.view.isWhole())
      skipped = seen.view.isOver() && best.size() > words.size() ? best.size() - words.size() : SIZE_MAX;
    for (std::size_t i = 0; skipped != SIZE_MAX && i < words.size(); ++i) {
      if (i + skipped < best.size() && words[i].meaning == best[i + skipped].meaning) continue;
      first = &words[i];
      if (i + skipped < best.size()) other = &best[i + skipped];
      break;
    }
  }
  const auto add = [&](const SaidAt& at, std::string text) {
    findings_.push_back({seen.view.number(), false, seen.view.label(), at, *seen.connection, std::move(text), 0});
  };
  // A fault that the others were told, too, explains nothing.
  const auto isTheirs = [&](const HandFault& fault) {
    const auto& theirs = best_->audit.faults();
    return std::any_of(theirs.begin(), theirs.end(), [&](const HandFault& told) { return told.text == fault.text; });
  };
  bool isExplained = first == nullptr;
  for (const HandFault& fault : seen.audit.faults()) {
    if (!fault.isLeak && first != nullptr && fault.at.command > first->at.command) continue;
    add(fault.at, fault.text);
    isExplained = isExplained || (!fault.isLeak && !isTheirs(fault));
  }
  if (isExplained) return;
  std::string text = "is told \"" + first->text() + '"';
  if (other == nullptr) {
    text += ", and others are not";
  } else if (other->text() == first->text()) {
    text += ", but not in the same way as " + *best_->connection + " with command " + std::to_string(other->at.command);
  } else {
    text += ", where " + *best_->connection + " is told \"" + other->text() + "\" with command " +
            std::to_string(other->at.command);
  }
  add(first->at, std::move(text));
}

/// Cards that two players were dealt, of which neither knows.
void RecordedHand::findDoubles() {
  struct Dealt {
    const SeenHand* seen;
    SeatID seat;
    Card card;
  };
  std::vector<Dealt> dealt;
  for (const auto& seen : views_) {
    const HandView::Player* player = seen->view.find(seen->view.viewer());
    if (player == nullptr) continue;
    for (const Card& card : player->cards) {
      if (!hasFace(card)) continue;
      const auto same = std::find_if(dealt.begin(), dealt.end(),
                                     [&](const Dealt& d) { return d.seat != player->seat && sameFace(d.card, card); });
      const std::string text = cardText(card) + " is there twice: ";
      const bool isTold = std::any_of(findings_.begin(), findings_.end(),
                                      [&](const HandFinding& finding) { return finding.text.starts_with(text); });
      if (same != dealt.end() && !isTold) {
        findings_.push_back({seen->view.number(), false, seen->view.label(), seen->dealtAt, *seen->connection,
                             text + "among the cards of " + seatText(player->seat) + ", and of " +
                                 seatText(same->seat) + " (command " + std::to_string(same->seen->dealtAt.command) +
                                 ')',
                             0});
      }
      dealt.push_back({seen.get(), player->seat, card});
    }
  }
}

// All of them

HandRecorder::Client& HandRecorder::clientOf(std::string_view connection) {
  auto place = clients_.find(connection);
  if (place == clients_.end()) {
    place = clients_.emplace(std::string(connection), Client()).first;
    FollowerEvents& events = *this;
    place->second.follower = std::make_unique<TableFollower>(std::string(connection), events);
    ++seenConnections_;
  }
  return place->second;
}

void HandRecorder::take(const CapturedFrame& frame, const PokerCommandI& command) {
  constexpr std::size_t kCode = 4;  // behind the length slot
  now_ = frame.number;
  Client& client = clientOf(frame.connection);
  client.lastAt = now_;
  client.follower->take(frame, command, static_cast<ProcessorFamily>(frame.bytes[kCode + 1]), frame.bytes[kCode]);
  takeFaults(*client.follower);
  if (now_ - lastSweep_ >= kSweepEach) sweep();
}

void HandRecorder::lose(std::string_view connection) {
  const auto client = clients_.find(connection);
  if (client != clients_.end()) client->second.follower->lose();
}

void HandRecorder::leaveRoom(Client& client) {
  if (client.room != nullptr) client.room->here.erase(client.follower.get());
  client.room = nullptr;
}

void HandRecorder::onTable(TableFollower& follower) {
  Client& client = clientOf(follower);
  leaveRoom(client);
  client.room = &rooms_[follower.key()];
  // Of hands that are over already it will not hear.
  std::uint64_t last = 0;
  for (const auto& joined : client.room->hands) {
    if (joined->endedAt) last = joined->ordinal;
  }
  client.room->here[&follower] = last;
  pump();
}

void HandRecorder::onBegin(TableFollower& follower, std::shared_ptr<SeenHand> hand) {
  Client& client = clientOf(follower);
  const std::uint64_t number = hand->view.number();
  if (follower.key().empty()) goWhere(client, number);
  if (client.room == nullptr) client.room = &rooms_[follower.key()];
  const auto isIt = [&](const std::shared_ptr<Joined>& joined) {
    // The connection itself has seen none of that number: it would be another one.
    return joined->hand.number() == number &&
           std::none_of(joined->hand.views_.begin(), joined->hand.views_.end(), [&](const auto& seen) {
             return *seen->connection == follower.connection() && seen->view.isWhole();
           });
  };
  Room& room = *client.room;
  const auto known = std::find_if(room.hands.begin(), room.hands.end(), isIt);
  std::shared_ptr<Joined> joined;
  if (known != room.hands.end()) {
    joined = *known;
  } else {
    joined = room.hands.emplace_back(std::make_shared<Joined>());
    joined->room = &room;
    joined->ordinal = ++room.hands_;
  }
  joined->lastAt = now_;
  joined->hand.views_.push_back(std::move(hand));
  room.here[&follower] = joined->ordinal;
  room.lastAt = now_;
}

/// A connection whose table nobody has told plays the hand that others play.
void HandRecorder::goWhere(Client& client, std::uint64_t number) {
  for (auto& [key, room] : rooms_) {
    const auto isIt = [&](const auto& joined) { return joined->hand.number() == number; };
    if (key.empty() || &room == client.room || std::none_of(room.hands.begin(), room.hands.end(), isIt)) continue;
    leaveRoom(client);
    client.room = &room;
    return;
  }
}

void HandRecorder::onEnd(TableFollower& follower, SeenHand& hand) {
  hand.isOpen = false;
  Room& room = *clientOf(follower).room;
  for (const auto& joined : room.hands) {
    const auto& views = joined->hand.views_;
    if (std::none_of(views.begin(), views.end(), [&](const auto& seen) { return seen.get() == &hand; })) continue;
    joined->lastAt = now_;
    const bool isClosed = std::none_of(views.begin(), views.end(), [](const auto& seen) { return seen->isOpen; });
    if (hand.view.isOver() || isClosed) queue(joined);
    break;
  }
  pump();
}

void HandRecorder::onScript(TableFollower& follower) {
  Client& client = clientOf(follower);
  if (client.room == nullptr) return;
  for (auto& [other, ordinal] : client.room->here) other->noteScript();
}

void HandRecorder::queue(const std::shared_ptr<Joined>& joined) {
  if (!joined->endedAt) {
    joined->endedAt = now_;
    joined->roomEnds = ++joined->room->ends;
  }
  if (std::exchange(joined->isQueued, true)) return;
  queue_.push_back(joined);
}

bool HandRecorder::isReady(const Joined& joined) const {
  if (joined.room->ends >= joined.roomEnds + kMostLaterHands || now_ - *joined.endedAt > kMostLaterCommands)
    return true;
  for (const auto& seen : joined.hand.views_) {
    if (seen->isOpen) return false;
  }
  for (const auto& [follower, ordinal] : joined.room->here) {
    if (ordinal < joined.ordinal) return false;
  }
  return true;
}

void HandRecorder::pump() {
  while (!queue_.empty() && isReady(*queue_.front())) {
    const std::shared_ptr<Joined> joined = std::move(queue_.front());
    queue_.pop_front();
    handOut(*joined);
  }
}

void HandRecorder::handOut(Joined& joined) {
  Room& room = *joined.room;
  // Who is late is waited for no more, until it is heard of again.
  for (auto follower = room.here.begin(); follower != room.here.end();) {
    follower = follower->second < joined.ordinal ? room.here.erase(follower) : std::next(follower);
  }
  std::erase_if(room.hands, [&](const auto& each) { return each.get() == &joined; });
  joined.hand.judge();
  onHand_(joined.hand);
}

void HandRecorder::takeFaults(TableFollower& follower) {
  for (FaultBetween& between : follower.takeFaults()) {
    HandFinding finding{between.afterHand,
                        true,
                        std::move(between.table),
                        between.fault.at,
                        follower.connection(),
                        std::move(between.fault.text),
                        0};
    const auto same = std::find_if(between_.begin(), between_.end(), [&](const HandFinding& other) {
      return other.text == finding.text && other.hand == finding.hand && other.table == finding.table &&
             other.connection != finding.connection;
    });
    if (same != between_.end()) {
      ++same->others;
    } else {
      between_.push_back(std::move(finding));
    }
  }
}

void HandRecorder::flushFaults() {
  while (!between_.empty()) {
    onFinding_(between_.front());
    between_.pop_front();
  }
}

/// Lets go of what nothing more will be heard of.
void HandRecorder::sweep() {
  lastSweep_ = now_;
  while (!between_.empty() && now_ - between_.front().at.command > kMostLaterCommands) {
    onFinding_(between_.front());
    between_.pop_front();
  }
  for (auto& [key, room] : rooms_) {
    for (const auto& joined : room.hands) {
      if (!joined->endedAt && now_ - joined->lastAt > kMostSilence) queue(joined);
    }
  }
  for (auto client = clients_.begin(); client != clients_.end();) {
    if (now_ - client->second.lastAt <= kMostSilence) {
      ++client;
      continue;
    }
    client->second.follower->lose();
    leaveRoom(client->second);
    client = clients_.erase(client);
  }
  pump();
  for (auto room = rooms_.begin(); room != rooms_.end();) {
    const bool isUnused = room->second.here.empty() && room->second.hands.empty() &&
                          now_ - room->second.lastAt > kMostSilence &&
                          std::none_of(clients_.begin(), clients_.end(),
                                       [&](const auto& client) { return client.second.room == &room->second; });
    room = isUnused ? rooms_.erase(room) : std::next(room);
  }
}

void HandRecorder::finish() {
  while (!queue_.empty()) {
    const std::shared_ptr<Joined> joined = std::move(queue_.front());
    queue_.pop_front();
    handOut(*joined);
  }
  // What was still played, in the order in which it began.
  std::vector<std::shared_ptr<Joined>> left;
  for (auto& [key, room] : rooms_) left.insert(left.end(), room.hands.begin(), room.hands.end());
  std::sort(left.begin(), left.end(), [](const auto& a, const auto& b) { return a->hand.number() < b->hand.number(); });
  for (const auto& joined : left) handOut(*joined);
  flushFaults();
}

}  // namespace poker
