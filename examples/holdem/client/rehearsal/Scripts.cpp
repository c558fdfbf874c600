#include <examples/holdem/client/rehearsal/Scripts.h>

#include <examples/holdem/shared/Protocol.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace poker::holdem {

namespace {

using namespace std::chrono_literals;

bool isDisconnect(const SrvErrorDisconnected& command) {
  return command.getErrorCode() == SrvErrorDisconnected::DisconnectConn;
}
bool isBadCommand(const SrvErrorDisconnected& command) {
  return command.getErrorCode() == SrvErrorDisconnected::BadCommand;
}

Client& shakeHands(Rehearsal& rehearsal, const ScriptSettings& settings) {
  Client& client = rehearsal.connect(settings.server);
  client.send<ClHandShake>(settings.version.value_or(kProtocolVersion));
  rehearsal.expect<SrvHandShaked>(client, "the server takes the connection");
  return client;
}

void ping(Rehearsal& rehearsal, Client& client) {
  client.send<ClPing>(std::uint8_t{1}, 2u);
  // The clock of whole seconds may tick between the ping and its answer.
  rehearsal.expect<SrvPing>(client, "the ping comes back, after no more than a second in the server",
                            [](const SrvPing& reply) { return reply.inServer() <= 1; });
}

void sayBye(Rehearsal& rehearsal, Client& client) {
  client.send<ClBye>();
  rehearsal.expectEnd(client, "after the bye the server closes without a word");
}

void playPolite(Rehearsal& rehearsal, ScriptSettings settings) {
  Client& client = shakeHands(rehearsal, settings);
  for (int i = 0; i < 3; ++i) {
    const std::uint32_t number = client.sendKeepAlive();
    rehearsal.expect<SrvKeepAliveReply>(
        client, fmt::format("keep-alive {} is answered with its number", number),
        [&](const SrvKeepAliveReply& reply) { return reply.sequenceNumber() == number; });
  }
  ping(rehearsal, client);

  rehearsal.say("waits for maintenance");
  if (settings.expectsAnnouncement) {
    const auto notice = rehearsal.receive<SrvMaintenance>(
        client, "maintenance is announced",
        [](const SrvMaintenance& it) { return it.getID() == kMaintenanceAnnounced; }, settings.patience);
    rehearsal.show(notice->getMessage());
    ping(rehearsal, client);
    rehearsal.say("waits for it to begin");
  }
  for (bool begins = false; !begins;) {
    const auto notice =
        rehearsal.receive<SrvMaintenance>(client, "the server tells of maintenance", {}, settings.patience);
    rehearsal.show(notice->getMessage());
    begins = notice->getID() == kMaintenanceBegins;
  }

  if (settings.client.leavesAtMaintenance) {
    // The bye is out already, by the handler of the notice.
    rehearsal.expectEnd(client, "after the bye the server closes without a word");
  } else {
    ping(rehearsal, client);
    const auto last = rehearsal.receive<SrvErrorDisconnected>(
        client, "the server ends the connection with DisconnectConn", isDisconnect, settings.patience);
    rehearsal.show(last->errCodeToVisualString());
    rehearsal.expectEnd(client, "and closes");
  }
  // The server may have ended the connection while the last one travelled.
  const Client::KeepAlives& counts = client.keepAlives();
  rehearsal.check(counts.inOrder && counts.answered + 1 >= counts.sent, "all keep-alives were answered, in order",
                  fmt::format("{} sent, {} answered", counts.sent, counts.answered));
}

void playBrief(Rehearsal& rehearsal, ScriptSettings settings) {
  Client& client = shakeHands(rehearsal, settings);
  ping(rehearsal, client);
  sayBye(rehearsal, client);
}

/// The text that either notice of a new version shows: the standard one, and the server's own behind it.
bool showsBothTexts(const SrvNewClientVersionAvail& notice, std::string_view standardBegin) {
  const std::string text = notice.getMessage();
  const std::size_t own = text.find("\n\r");
  return text.starts_with(standardBegin) && own != std::string::npos && own + 2 < text.size();
}

void playOutdated(Rehearsal& rehearsal, ScriptSettings settings) {
  settings.version = settings.version.value_or(kProtocolVersion - 1);
  Client& client = shakeHands(rehearsal, settings);
  const auto notice = rehearsal.receive<SrvNewClientVersionAvail>(
      client, "an optional upgrade is offered, with both texts", [](const SrvNewClientVersionAvail& it) {
        return it.type() == SrvNewClientVersionAvail::OptionalUpgrade &&
               showsBothTexts(it, "In our continuous efforts to provide you with the best online poker\n");
      });
  rehearsal.show(notice->getMessage());
  ping(rehearsal, client);
  sayBye(rehearsal, client);
}

void playForced(Rehearsal& rehearsal, ScriptSettings settings) {
  Client& client = rehearsal.connect(settings.server);
  client.send<ClHandShake>(settings.version.value_or(kOldestVersion - 1));
  const auto notice = rehearsal.receive<SrvNewClientVersionAvail>(
      client, "an upgrade is forced, with both texts", [](const SrvNewClientVersionAvail& it) {
        return it.type() == SrvNewClientVersionAvail::ForcedUpgrade &&
               showsBothTexts(it, "In our continuous efforts to provide you with the best\nonline poker experience");
      });
  rehearsal.show(notice->getMessage());
  rehearsal.expectEnd(client, "and the server closes");
}

struct Garbage {
  std::string_view what;
  std::vector<std::uint8_t> bytes;
};

void playGarbage(Rehearsal& rehearsal, ScriptSettings settings) {
  const std::array<Garbage, 6> kinds = {{
      {"a pair that names no command", {0x06, 0, 0, 0, 0xFA, 0x02}},
      {"a keep-alive with half its number", {0x08, 0, 0, 0, 0x80, 0x02, 0x05, 0x00}},
      {"a ping with a byte too many", {0x09, 0, 0, 0, 0x7F, 0x02, 0x01, 0x02, 0x03}},
      {"a command of the server's", {0x06, 0, 0, 0, 0xC8, 0x01}},
      {"a length above the limit", {0xFF, 0xFF, 0xFF, 0x7F, 0x80, 0x02}},
      {"a length below the smallest", {0x05, 0, 0, 0, 0x80, 0x02}},
  }};
  for (const Garbage& garbage : kinds) {
    Client& client = shakeHands(rehearsal, settings);
    client.sendFrame(garbage.bytes);
    rehearsal.expect<SrvErrorDisconnected>(client, fmt::format("{}: BadCommand", garbage.what), isBadCommand);
    rehearsal.expectEnd(client, "and the server closes");
  }
}

void playIdle(Rehearsal& rehearsal, ScriptSettings settings) {
  const std::chrono::milliseconds interval = settings.client.keepAlive;
  const auto start = std::chrono::steady_clock::now();
  Client& client = shakeHands(rehearsal, settings);
  rehearsal.say("falls silent");
  rehearsal.expect<SrvErrorDisconnected>(client, "who misses two keep-alives is cut off with DisconnectConn",
                                         isDisconnect, interval * 3 + Rehearsal::kAnswerTime);
  const auto silence = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
  rehearsal.check(silence >= interval * 2, "not before two were missed",
                  fmt::format("after {} ms, {} ms between two", silence.count(), interval.count()));
  rehearsal.expectEnd(client, "and the server closes");
}

void playCrowd(Rehearsal& rehearsal, ScriptSettings settings) {
  std::vector<Client*> inside;
  const auto enter = [&](std::string_view what) {
    Client& client = rehearsal.connect(settings.server);
    client.send<ClHandShake>(settings.version.value_or(kProtocolVersion));
    const bool taken = rehearsal.expectEither<SrvHandShaked, SrvBusy>(client, what);
    if (taken) {
      inside.push_back(&client);
    } else {
      rehearsal.expectEnd(client, "a busy server closes");
    }
    return taken;
  };
  while (inside.size() < settings.most && enter("the server takes the connection, or is busy")) {
  }
  rehearsal.check(inside.size() < settings.most, "the server is full at last",
                  fmt::format("it took {} connections", inside.size()));
  rehearsal.check(!inside.empty(), "it had room for one at least", "it was full before");
  rehearsal.check(!enter("one more makes no difference"), "a full server stays full", "it took one more connection");
  ping(rehearsal, *inside.front());
  sayBye(rehearsal, *inside.front());
  rehearsal.check(enter("where one has left, one may come"), "there is room again", "it is still busy");
  for (std::size_t i = 1; i < inside.size(); ++i) sayBye(rehearsal, *inside[i]);
}

void playRedirected(Rehearsal& rehearsal, ScriptSettings settings) {
  Client& client = rehearsal.connect(settings.server);
  client.send<ClHandShake>(settings.version.value_or(kProtocolVersion));
  const auto notice = rehearsal.receive<ServiceNotAvailable>(client, "the server has moved");
  rehearsal.expectEnd(client, "and closes");
  const std::optional<Endpoint> there = Endpoint::parse(notice->newServer());
  rehearsal.check(there.has_value(), "the new address is one", "it is not HOST:PORT");
  rehearsal.say(fmt::format("goes to {}", there->toString()));
  settings.server = *there;
  playPolite(rehearsal, settings);
}

constexpr std::array kScripts = {
    Script{"polite", "keeps alive, pings and stays until maintenance", playPolite},
    Script{"brief", "shakes hands, pings and leaves", playBrief},
    Script{"outdated", "is offered an upgrade and goes on without", playOutdated},
    Script{"forced", "is too old to be served", playForced},
    Script{"garbage", "sends six kinds of bytes that are no command, and is cut off each time", playGarbage},
    Script{"idle", "falls silent and is cut off", playIdle},
    Script{"crowd", "comes until there is no room, and again when there is", playCrowd},
    Script{"redirected", "finds that the server has moved, follows, and is polite there", playRedirected},
};

}  // namespace

std::span<const Script> scripts() { return kScripts; }

const Script* findScript(std::string_view name) {
  const auto place = std::find_if(kScripts.begin(), kScripts.end(), [&](const Script& it) { return it.name == name; });
  return place == kScripts.end() ? nullptr : &*place;
}

}  // namespace poker::holdem
