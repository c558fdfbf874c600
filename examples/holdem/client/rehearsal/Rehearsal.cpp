#include <examples/holdem/client/rehearsal/Rehearsal.h>

#include <hostkit/CommandFactory.h>
#include <inspect/CommandText.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

namespace poker::holdem {

namespace {

const fmt::text_style kGood = fmt::fg(fmt::terminal_color::green);
const fmt::text_style kBad = fmt::fg(fmt::terminal_color::red) | fmt::emphasis::bold;
const fmt::text_style kQuiet = fmt::emphasis::faint;

/// "SrvBusy", "SrvPing inServer=0"
std::string inWords(const PokerCommandI& command) {
  const CommandClass* known = CommandFactory::find(command);
  std::string text(known != nullptr ? known->name() : "an unknown class");
  const std::string fields = fieldsAsText(command);
  return fields.empty() ? text : text + ' ' + fields;
}

std::string inWords(const Client::Arrival& end) {
  return fmt::format("the connection ended ({}){}{}", toText(end.reason), end.trouble.empty() ? "" : ": ", end.trouble);
}

}  // namespace

Rehearsal::Rehearsal(ClientSettings settings, bool colour, Transcript* transcript)
    : settings_(settings), colour_(colour), transcript_(transcript) {}

Client& Rehearsal::connect(const Endpoint& server) {
  const auto number = static_cast<std::int32_t>(connections_.size() + 1);
  return connections_.emplace_back(context_, server, settings_, number, transcript_);
}

std::optional<Client::Arrival> Rehearsal::await(Client& client, Duration within, const Wanted& wanted) {
  const auto leave = [&](const PokerCommandI& command) {
    return (isA<SrvMaintenance>(command) || isA<SrvNewClientVersionAvail>(command)) && !wanted(command);
  };
  const auto deadline = std::chrono::steady_clock::now() + within;
  for (;;) {
    if (auto arrival = client.takeArrival(leave)) {
      if (!arrival->command && arrival->reason == CloseReason::ConnectFailed) {
        throw NotConnected("no connection to the server");
      }
      return arrival;
    }
    if (context_.run_one_until(deadline) == 0) return std::nullopt;
  }
}

CommandHandle<> Rehearsal::awaitCommand(Client& client, std::string_view what, Duration within, const Wanted& wanted) {
  std::optional<Client::Arrival> arrival = await(client, within, wanted);
  if (!arrival) fail(what, fmt::format("nothing came in {} ms", within.count()));
  if (!arrival->command) fail(what, inWords(*arrival));
  return std::move(arrival->command);
}

void Rehearsal::expectEnd(Client& client, std::string_view what, Duration within) {
  const std::optional<Client::Arrival> arrival = await(client, within, [](const PokerCommandI&) { return false; });
  if (!arrival) fail(what, fmt::format("it still stands after {} ms", within.count()));
  if (arrival->command) failOn(what, *arrival->command);
  check(arrival->reason == CloseReason::ByPeer, what, inWords(*arrival));
}

void Rehearsal::check(bool holds, std::string_view what, std::string_view otherwise) {
  if (!holds) fail(what, otherwise);
  held(what);
}

void Rehearsal::held(std::string_view what) {
  ++held_;
  tell(kGood, "ok", what);
}

void Rehearsal::fail(std::string_view what, std::string_view otherwise) {
  tell(kBad, "FAILED", fmt::format("{}: {}", what, otherwise));
  throw ExpectationFailed();
}

void Rehearsal::failOn(std::string_view what, const PokerCommandI& came) {
  fail(what, fmt::format("{} came", inWords(came)));
}

void Rehearsal::say(std::string_view text) { tell(kQuiet, "...", text); }

void Rehearsal::show(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\n\r"), text.size());
    // Escaped as quoted() does, without its quotes.
    const std::string line = quoted(text.substr(0, end));
    if (end != 0) fmt::print("                 | {}\n", std::string_view(line).substr(1, line.size() - 2));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  std::fflush(stdout);
}

void Rehearsal::tell(const fmt::text_style& style, std::string_view verdict, std::string_view what) {
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start_;
  const std::string mark = fmt::format("{:<6}", verdict);
  fmt::print("{} {:>7.3f}  {}\n", colour_ ? fmt::format(style, "{}", mark) : mark, passed.count(), what);
  std::fflush(stdout);
}

}  // namespace poker::holdem
