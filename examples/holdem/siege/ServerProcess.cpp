#include <examples/holdem/siege/ServerProcess.h>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

extern char** environ;

namespace poker::holdem {

using namespace std::chrono_literals;

namespace {

/// The number behind a key of /proc/PID/status, in kB there.
std::size_t statusBytes(const std::string& process, const std::string& key) {
  std::ifstream status("/proc/" + process + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(key + ':')) return std::stoul(line.substr(key.size() + 1)) * 1024;
  }
  return 0;
}

}  // namespace

std::optional<ProcessUse> useOf(pid_t process) {
  const std::string name = std::to_string(process);
  ProcessUse use;
  use.residentBytes = statusBytes(name, "VmRSS");
  std::error_code failure;
  const std::filesystem::directory_iterator descriptors("/proc/" + name + "/fd", failure);
  if (use.residentBytes == 0 || failure) return std::nullopt;
  use.descriptors = static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
  std::ifstream file("/proc/" + name + "/stat");
  std::string stat((std::istreambuf_iterator<char>(file)), {});
  // The fields behind the program's name, which may hold blanks: state, then 10 others, then the times.
  std::size_t place = stat.rfind(')');
  for (int field = 0; field < 12 && place != std::string::npos; ++field) place = stat.find(' ', place + 1);
  if (place != std::string::npos) {
    std::size_t length = 0;
    const double user = std::stod(stat.substr(place + 1), &length);
    use.cpuSeconds = (user + std::stod(stat.substr(place + 1 + length))) / static_cast<double>(sysconf(_SC_CLK_TCK));
  }
  return use;
}

std::size_t takePeakBytes() {
  const std::size_t peak = statusBytes("self", "VmHWM");
  std::ofstream("/proc/self/clear_refs") << 5;
  return peak;
}

ServerProcess::ServerProcess(std::string program, std::vector<std::string> options, std::filesystem::path folder)
    : program_(std::move(program)), options_(std::move(options)), folder_(std::move(folder)) {}

ServerProcess::~ServerProcess() { kill(); }

void ServerProcess::start() {
  // The port of one that has just died may be taken for a moment.
  for (int tries = 0;; ++tries) {
    spawn();
    const auto deadline = std::chrono::steady_clock::now() + 30s;
    const std::filesystem::path portFile = folder_ / "port";
    while (!hasEnded() && std::chrono::steady_clock::now() < deadline) {
      if (std::ifstream file(portFile); file >> endpoint_.port) return;
      std::this_thread::sleep_for(5ms);
    }
    const bool isDead = hasEnded();
    const std::string last = lastWords();
    kill();
    if (!isDead || tries == 50 || last.find("cannot listen") == std::string::npos) {
      throw std::runtime_error("the server does not start: " + (last.empty() ? program_ : last));
    }
    std::this_thread::sleep_for(100ms);
  }
}

void ServerProcess::spawn() {
  ++starts_;
  howEnded_.clear();
  const std::filesystem::path output = folder_ / ("server-" + std::to_string(starts_) + ".out");
  std::filesystem::remove(folder_ / "port");
  std::vector<std::string> words = {
      program_,      "--listen",       endpoint_.toString(),
      "--port-file", folder_ / "port", "--database",
      bankFile(),    "--log",          folder_ / ("server-" + std::to_string(starts_) + ".log")};
  words.insert(words.end(), options_.begin(), options_.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);  // our clients' sockets are not the server's
  const int failure = posix_spawn(&process_, program_.c_str(), &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) {
    process_ = -1;
    throw std::system_error(failure, std::generic_category(), "cannot run " + program_);
  }
}

std::string ServerProcess::lastWords() const {
  std::ifstream output(folder_ / ("server-" + std::to_string(starts_) + ".out"));
  std::string last;
  for (std::string line; std::getline(output, line);) {
    if (!line.empty()) last = line;
  }
  return last;
}

bool ServerProcess::hasEnded() {
  if (process_ < 0) return true;
  int status = 0;
  if (waitpid(process_, &status, WNOHANG) != process_) return false;
  howEnded_ = WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                                  : "status " + std::to_string(WEXITSTATUS(status));
  process_ = -1;
  return true;
}

void ServerProcess::kill() {
  if (process_ < 0) return;
  ::kill(process_, SIGKILL);
  while (!hasEnded()) std::this_thread::sleep_for(1ms);
}

void ServerProcess::askToEnd() {
  if (process_ > 0) ::kill(process_, SIGTERM);
}

}  // namespace poker::holdem
