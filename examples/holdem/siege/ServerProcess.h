#pragma once

#include <examples/holdem/shared/Endpoint.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace poker::holdem {

/// A process of /proc: what it takes of the machine.
struct ProcessUse {
  std::size_t residentBytes = 0;
  std::size_t descriptors = 0;
  double cpuSeconds = 0;
};
/// Nothing when there is no such process, or no /proc.
std::optional<ProcessUse> useOf(pid_t process);
/// The most that this process has held since the last call; 0 where the system does not tell.
std::size_t takePeakBytes();

/// A game server as a child process, which can be killed and come back at its port. What it leaves is in its folder: the
/// bank, and a log for each start.
class ServerProcess {
 public:
  /// @param options  beside those for the port, the bank and the log
  ServerProcess(std::string program, std::vector<std::string> options, std::filesystem::path folder);
  /// Kills it, if it is still there.
  ~ServerProcess();
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  /// Returns when it listens.
  /// @throws std::runtime_error  with the last line of its log
  void start();
  void kill();
  /// SIGTERM.
  void askToEnd();
  /// Whether it has ended; the status is then known.
  bool hasEnded();
  /// "status 0", "signal 9".
  const std::string& howEnded() const { return howEnded_; }
  bool endedInOrder() const { return howEnded_ == "status 0"; }

  pid_t process() const { return process_; }
  const Endpoint& endpoint() const { return endpoint_; }
  std::string bankFile() const { return folder_ / "bank"; }
  const std::filesystem::path& folder() const { return folder_; }

 private:
  void spawn();
  std::string lastWords() const;

  std::string program_;
  std::vector<std::string> options_;
  std::filesystem::path folder_;
  Endpoint endpoint_{"127.0.0.1", 0};
  pid_t process_ = -1;
  unsigned starts_ = 0;
  std::string howEnded_;
};

}  // namespace poker::holdem
