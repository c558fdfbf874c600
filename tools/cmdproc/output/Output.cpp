#include <tools/cmdproc/output/Output.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace poker::cmdproc {

namespace {

constexpr std::size_t kBuffer = 256 * 1024;

std::int64_t milliseconds() {
  using namespace std::chrono;
  return duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

Output::Output() {
#ifdef _WIN32
  _setmode(_fileno(stdout), _O_BINARY);
#endif
  buffer_.reserve(kBuffer + 4096);
}

Output::~Output() {
  // What a failure has left behind is still good; whether it can be written is nobody's question any more.
  if (!buffer_.empty()) std::fwrite(buffer_.data(), 1, buffer_.size(), stdout);
  std::fflush(stdout);
}

void Output::write(std::string_view text) {
  buffer_ += text;
  if (buffer_.size() >= kBuffer) flush();
}

void Output::line(std::string_view text) {
  buffer_ += text;
  write("\n");
}

void Output::flush() {
  const std::size_t size = buffer_.size();
  const std::size_t written = std::fwrite(buffer_.data(), 1, size, stdout);
  buffer_.clear();
  if (written != size || std::fflush(stdout) != 0) {
    throw std::runtime_error("standard output: " + std::generic_category().message(errno));
  }
}

void complain(std::string_view message) {
  std::fflush(stdout);
  std::fprintf(stderr, "cmdproc: %.*s\n", static_cast<int>(message.size()), message.data());
}

bool isTerminal(std::FILE* stream) {
#ifdef _WIN32
  return _isatty(_fileno(stream)) != 0;
#else
  return isatty(fileno(stream)) != 0;
#endif
}

bool wantsColour(std::FILE* stream) {
  const char* refused = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  if (refused != nullptr && *refused != '\0') return false;
  if (terminal != nullptr && std::string_view(terminal) == "dumb") return false;
  return isTerminal(stream);
}

void addShowSecrets(CLI::App& subcommand, JsonSecrets& secrets) {
  subcommand.add_flag_callback(
      "--show-secrets", [&secrets] { secrets = JsonSecrets::kShow; },
      "show passwords, PINs and secure-channel bytes in clear");
}

void warnOfSecrets(JsonSecrets secrets) {
  if (secrets == JsonSecrets::kShow) {
    complain("WARNING: passwords, PINs and secure-channel bytes are shown in clear; keep this output to yourself");
  }
}

Progress::Progress() : enabled_(isTerminal(stderr)), begun_(milliseconds()), last_(begun_) {}

Progress::~Progress() { clear(); }

void Progress::update(std::uint64_t done, std::optional<std::uint64_t> total, std::uint64_t items,
                      std::string_view what) {
  if (!enabled_ || ++calls_ % 1024 != 0) return;
  const std::int64_t now = milliseconds();
  if (now - begun_ < 1000 || now - last_ < 200) return;
  last_ = now;
  show(done, total, items, what);
}

void Progress::show(std::uint64_t done, std::optional<std::uint64_t> total, std::uint64_t items,
                    std::string_view what) {
  constexpr double kMegabyte = 1e6;
  const double seconds = static_cast<double>(last_ - begun_) / 1000;
  const double megabytes = static_cast<double>(done) / kMegabyte;
  std::fprintf(stderr, "\r\033[K%.1f MB", megabytes);
  if (total && *total != 0) {
    std::fprintf(stderr, " of %.1f MB (%.0f %%)", static_cast<double>(*total) / kMegabyte,
                 100 * static_cast<double>(done) / static_cast<double>(*total));
  }
  std::fprintf(stderr, ", %llu %.*s, %.1f MB/s", static_cast<unsigned long long>(items), static_cast<int>(what.size()),
               what.data(), megabytes / seconds);
  std::fflush(stderr);
  shown_ = true;
}

void Progress::clear() {
  if (!shown_) return;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
  shown_ = false;
}

}  // namespace poker::cmdproc
