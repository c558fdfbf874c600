#include <examples/holdem/siege/Report.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>

namespace poker::holdem {

namespace {

double mib(double bytes) { return bytes / (1024 * 1024); }
double ms(std::uint32_t microseconds) { return microseconds / 1000.0; }

nlohmann::json jsonOf(const Latency& latency) {
  return {{"answers", latency.count},
          {"p50_ms", ms(latency.p50)},
          {"p99_ms", ms(latency.p99)},
          {"most_ms", ms(latency.most)}};
}

}  // namespace

Latency Latency::of(std::vector<std::uint32_t> times) {
  Latency result;
  result.count = times.size();
  if (times.empty()) return result;
  std::sort(times.begin(), times.end());
  const auto at = [&](std::size_t share) { return times[(times.size() - 1) * share / 100]; };
  result.p50 = at(50);
  result.p99 = at(99);
  result.most = times.back();
  return result;
}

double slopeOf(const std::vector<Sample>& samples) {
  double seconds = 0, bytes = 0;
  for (const Sample& each : samples) {
    seconds += each.second;
    bytes += static_cast<double>(each.residentBytes);
  }
  const auto count = static_cast<double>(samples.size());
  double above = 0, below = 0;
  for (const Sample& each : samples) {
    const double x = each.second - seconds / count;
    above += x * (static_cast<double>(each.residentBytes) - bytes / count);
    below += x * x;
  }
  return below > 0 ? above / below : 0;
}

std::string Report::asText() const {
  std::string text;
  const auto to = std::back_inserter(text);
  const auto line = [&]<class... Args>(std::string_view what, fmt::format_string<Args...> format, Args&&... args) {
    fmt::format_to(to, "{:<24}", what);
    fmt::format_to(to, format, std::forward<Args>(args)...);
    text += '\n';
  };
  const auto latency = [&](std::string_view what, const Latency& times) {
    line(what, "p50 {:.2f} ms, p99 {:.2f} ms, most {:.2f} ms, of {} actions", ms(times.p50), ms(times.p99),
         ms(times.most), times.count);
  };
  line("seed", "{}", seed);
  line("connections", "{}: {} attackers among them, {} tables", connections, attackers, tables);
  line("held", "{} honest ones in quiet times, {} under attack; {} with the attackers'", heldCalm, heldAttacked,
       heldAll);
  line("honest ones lost", "{}", honestLost);
  latency("answers, quiet", calm);
  latency("answers, under attack", attacked);
  if (calm.p99 != 0) line("ratio of the p99", "{:.2f}", static_cast<double>(attacked.p99) / calm.p99);
  line("hands", "{}", hands);
  if (!samples.empty()) {
    line("server's memory", "{:.1f} MiB, then {:.1f} MiB, most {:.1f} MiB; slope {:+.2f} KiB/s over {:.0f} s",
         mib(static_cast<double>(residentFirst)), mib(static_cast<double>(residentLast)),
         mib(static_cast<double>(residentMost)), slope / 1024, samples.back().second - samples.front().second);
    line("server's descriptors", "{} in quiet times, {} at the end", descriptorsCalm, descriptorsLast);
    line("server's processor", "{:.0f} % of a core under attack", cpuShare * 100);
  }
  for (const Killed& kill : kills) {
    line("killed", "{} hands confirmed, {} missing; {} accounts missing; difference {}; all back in {:.1f} s",
         kill.handsConfirmed, kill.handsMissing, kill.accountsMissing, kill.difference, kill.backSeconds);
  }
  if (!ended.empty()) line("ended", "{}", ended);

  if (!attacks.empty())
    fmt::format_to(to, "\n{:<18}{:>13}{:>10}{:>10}{:>14}{:>14}\n", "attack", "connections", "refused", "cut off",
                   "KiB sent", "KiB received");
  for (const auto& [name, count] : attacks) {
    fmt::format_to(to, "{:<18}{:>13}{:>10}{:>10}{:>14}{:>14}\n", name, count.connections, count.refused, count.cutOff,
                   count.bytesSent / 1024, count.bytesReceived / 1024);
  }
  for (std::size_t i = 0; i < kFaults; ++i) {
    if (faults[i] != 0)
      fmt::format_to(to, "{:<18}{:>13} times\n", fmt::format("proxy: {}", toText(static_cast<Fault>(i))), faults[i]);
  }
  if (!client.empty()) fmt::format_to(to, "\n{:<26}{:>7}{:>10}  {}\n", "against the client", "s", "MiB", "it says");
  for (const ClientCase& each : client) {
    fmt::format_to(to, "{:<26}{:>7.2f}{:>10.1f}  {}\n", each.name, each.seconds,
                   mib(static_cast<double>(each.peakBytes)),
                   each.fault.empty() ? each.ended : "FAULT: " + each.fault + " (" + each.ended + ")");
  }
  text += '\n';
  for (const std::string& bound : broken) text += "BROKEN: " + bound + '\n';
  if (broken.empty()) text += "All bounds hold.\n";
  return text;
}

std::string Report::asJson() const {
  nlohmann::json json = {
      {"seed", seed},
      {"connections", connections},
      {"attackers", attackers},
      {"tables", tables},
      {"seconds", seconds},
      {"held", {{"honest_calm", heldCalm}, {"honest_attacked", heldAttacked}, {"all", heldAll}}},
      {"honest_lost", honestLost},
      {"calm", jsonOf(calm)},
      {"attacked", jsonOf(attacked)},
      {"hands", hands},
      {"memory",
       {{"first", residentFirst}, {"last", residentLast}, {"most", residentMost}, {"slope_bytes_per_second", slope}}},
      {"descriptors", {{"calm", descriptorsCalm}, {"last", descriptorsLast}}},
      {"cpu_share", cpuShare},
      {"ended", ended},
      {"broken", broken},
  };
  for (const auto& [name, count] : attacks) {
    json["attacks"][name] = {{"connections", count.connections},
                             {"refused", count.refused},
                             {"cut_off", count.cutOff},
                             {"bytes_sent", count.bytesSent},
                             {"bytes_received", count.bytesReceived}};
  }
  for (std::size_t i = 0; i < kFaults; ++i) json["faults"][toText(static_cast<Fault>(i))] = faults[i];
  for (const Killed& kill : kills) {
    json["kills"].push_back({{"hands_confirmed", kill.handsConfirmed},
                             {"hands_missing", kill.handsMissing},
                             {"accounts_missing", kill.accountsMissing},
                             {"difference", kill.difference},
                             {"back_seconds", kill.backSeconds}});
  }
  for (const Sample& each : samples) {
    json["samples"].push_back({each.second, each.residentBytes, each.descriptors, each.attacked});
  }
  for (const ClientCase& each : client) {
    json["client"].push_back({{"name", each.name},
                              {"ended", each.ended},
                              {"seconds", each.seconds},
                              {"peak_bytes", each.peakBytes},
                              {"fault", each.fault}});
  }
  return json.dump(2, ' ', true, nlohmann::json::error_handler_t::replace);
}

}  // namespace poker::holdem
