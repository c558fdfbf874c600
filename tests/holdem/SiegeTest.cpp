#include "Sanitized.h"
#include "TempFolder.h"

#include <examples/holdem/siege/Attack.h>
#include <examples/holdem/siege/HostileServer.h>
#include <examples/holdem/siege/Siege.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>

namespace poker::holdem {
namespace {

using namespace std::chrono_literals;
using test::kSanitized;

// The short form of holdem-siege: the real server as a process of its own. The one bound that no server can hold shows that
// the others were looked at.
TEST(Siege, TheServerIsAttackedKilledAndBroughtBackAndNothingIsLost) {
  const test::TempFolder folder;
  SiegeSettings settings;
  settings.connections = 100;
  settings.attackers = 0.3;
  settings.tables = 2;
  settings.seconds = 10s;
  settings.rounds = 2;
  settings.patience = 900ms;
  settings.besiegesClient = false;
  settings.program = HOLDEM_SERVER;
  settings.folder = folder.path;
  settings.latencyFactor = 1e-9;
  settings.checksMemory = !kSanitized;
  const std::atomic<bool> stops = false;
  const Report report = besiege(
      settings, [](const std::string&) {}, stops);
  ASSERT_EQ(report.broken.size(), 1u) << report.asText();
  EXPECT_THAT(report.broken.front(), testing::HasSubstr("p99 is "));
  EXPECT_LT(report.attacked.p99, 2'000'000u) << report.asText();
  ASSERT_EQ(report.kills.size(), 1u);
  EXPECT_GT(report.kills.front().handsConfirmed, 0u);
  EXPECT_EQ(report.ended, "status 0");
  EXPECT_EQ(report.attacks.size(), attackKinds().size());
}

TEST(Siege, TheClientSurvivesAMaliciousServerAndSaysWhatWasWrong) {
  for (const ClientCase& each : besiegeClient(3, !kSanitized)) {
    EXPECT_EQ(each.fault, "") << each.name << " ended with \"" << each.ended << "\" after " << each.seconds << " s, "
                              << each.peakBytes << " bytes";
  }
}

}  // namespace
}  // namespace poker::holdem
