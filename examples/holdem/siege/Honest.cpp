#include <examples/holdem/siege/Honest.h>

#include <examples/holdem/siege/Frames.h>

#include <algorithm>
#include <utility>

namespace poker::holdem {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

/// More than anybody loses while a server is killed and comes back.
constexpr unsigned kReconnects = 1'000'000;
/// So many come in at once: each needs its password's hash from the server.
constexpr std::size_t kAtOnce = 100;

}  // namespace

class Crowd::Guest final : public HouseEvents {
 public:
  Guest(Crowd& crowd, asio::io_context& context, VisitorSettings settings)
      : crowd_(crowd), name_(settings.name), client_(context, std::move(settings), *this) {}

  void begin() { client_.start(); }
  bool isInside() const { return client_.isSettled(); }
  bool wasInside() const { return wasInside_; }
  const std::string& name() const { return name_; }

 private:
  void onLoggedOn() override {
    if (!std::exchange(wasInside_, true)) crowd_.beginNext();
  }
  void onReconnecting(std::chrono::milliseconds) override {
    if (wasInside_) ++crowd_.lost_;
  }
  void onEnd(PlayerEnd, std::string_view why) override {
    if (crowd_.gone_++ == 0) crowd_.whyGone_ = name_ + ": " + std::string(why);
    if (!wasInside_) crowd_.beginNext();
  }

  Crowd& crowd_;
  std::string name_;
  bool wasInside_ = false;
  HouseClient client_;
};

Crowd::Crowd(asio::io_context& context, const Endpoint& server, std::size_t size) {
  VisitorSettings settings;
  settings.server = server;
  settings.password = std::string(kSecret) + " crowd";
  settings.registers = true;
  settings.reconnects = kReconnects;
  for (std::size_t i = 0; i < size; ++i) {
    settings.name = "Guest " + std::to_string(i + 1);
    guests_.push_back(std::make_unique<Guest>(*this, context, settings));
  }
}

Crowd::~Crowd() = default;

void Crowd::begin() {
  for (std::size_t i = 0; i < kAtOnce; ++i) beginNext();
}

void Crowd::beginNext() {
  if (begun_ < guests_.size()) guests_[begun_++]->begin();
}

std::size_t Crowd::inside() const {
  return static_cast<std::size_t>(
      std::count_if(guests_.begin(), guests_.end(), [](const auto& guest) { return guest->isInside(); }));
}

std::vector<std::string> Crowd::confirmed() const {
  std::vector<std::string> names;
  for (const auto& guest : guests_) {
    if (guest->wasInside()) names.push_back(guest->name());
  }
  return names;
}

/// A bot and its stop-watch.
class Play::Seat {
 public:
  Seat(Play& play, BotSettings settings) : play_(play), settings_(std::move(settings)), again_(play.context_) {}

  void begin() {
    bot_ = std::make_unique<Bot>(play_.context_, settings_, [this](PlayerEnd, std::string_view why) { onEnd(why); });
    bot_->client().observeFrames(
        [this](FrameDirection direction, std::span<const std::uint8_t> frame) { onFrame(direction, frame); });
    bot_->start();
  }
  bool isSeated() const { return bot_ != nullptr && bot_->client().isSettled() && isSeated_; }
  const std::string& name() const { return settings_.player.name; }

 private:
  void onFrame(FrameDirection direction, std::span<const std::uint8_t> frame) {
    if (direction == FrameDirection::Out) {
      if (isFrameOf<ClUserAction>(frame)) acted_ = Clock::now();
      if (isFrameOf<ClHandShake>(frame)) onConnected();
    } else if (isFrameOf<SrvUserActionNotify>(frame)) {
      if (acted_ == Clock::time_point()) return;
      const auto time = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - std::exchange(acted_, {}));
      play_.latencies_.push_back(static_cast<std::uint32_t>(time.count()));
    } else if (isFrameOf<SrvTUShowDown>(frame)) {
      isSeated_ = true;
      if (const std::uint64_t hand = bot_->client().picture().state().handNumber) play_.hands_.insert(hand);
    }
  }
  void onConnected() {
    acted_ = {};
    isSeated_ = false;
    if (std::exchange(wasConnected_, true)) ++play_.lost_;
  }
  void onEnd(std::string_view why) {
    if (play_.gone_++ == 0) play_.whyGone_ = name() + ": " + std::string(why);
    wasConnected_ = isSeated_ = false;
    if (play_.settings_.comesAgain) again_.in(500ms, [this] { begin(); });
  }

  Play& play_;
  BotSettings settings_;
  std::unique_ptr<Bot> bot_;
  Later again_;
  Clock::time_point acted_;
  bool wasConnected_ = false;
  bool isSeated_ = false;
};

Play::Play(asio::io_context& context, PlaySettings settings) : context_(context), settings_(std::move(settings)) {
  for (std::size_t table = 0; table < settings_.tables; ++table) {
    for (std::size_t seat = 0; seat < settings_.seats; ++seat) {
      BotSettings bot;
      bot.player.server = settings_.server;
      bot.player.name = settings_.names + ' ' + std::to_string(seats_.size() + 1);
      bot.player.password = std::string(kSecret) + " play";
      bot.player.registers = true;
      bot.player.reconnects = kReconnects;
      bot.player.gameID = settings_.firstGame + static_cast<std::uint32_t>(table);
      bot.player.sitsDown = true;
      bot.player.seat = static_cast<SeatID::value_type>(seat);
      bot.style = static_cast<Style>(seat % 3);
      bot.seed = settings_.seed * 1000 + seats_.size();
      bot.rebuys = 1'000'000;
      bot.pause = settings_.pause;
      bot.postsBlinds = true;
      seats_.push_back(std::make_unique<Seat>(*this, bot));
    }
  }
}

Play::~Play() = default;

void Play::begin() {
  for (const auto& seat : seats_) seat->begin();
}

std::size_t Play::seated() const {
  return static_cast<std::size_t>(
      std::count_if(seats_.begin(), seats_.end(), [](const auto& seat) { return seat->isSeated(); }));
}

std::vector<std::string> Play::names() const {
  std::vector<std::string> names;
  for (const auto& seat : seats_) names.push_back(seat->name());
  return names;
}

}  // namespace poker::holdem
