// The formatter and the sinks come from header-only libraries: whoever loads this library needs neither at run time.
#ifndef FMT_HEADER_ONLY
#define FMT_HEADER_ONLY
#endif
#ifndef SPDLOG_PREVENT_CHILD_FD
#define SPDLOG_PREVENT_CHILD_FD
#endif

#include <LogUtil/Log.h>

#include <spdlog/details/log_msg.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#ifndef _WIN32
#include <locale.h>
#include <clocale>
#endif

namespace poker {
namespace {

std::unique_ptr<spdlog::formatter> lineFormatter(std::string lineEnd) {
  return std::make_unique<spdlog::pattern_formatter>("%Y-%m-%dT%H:%M:%S.%eZ [%l] %n: %v",
                                                     spdlog::pattern_time_type::utc, std::move(lineEnd));
}

spdlog::level::level_enum nativeLevel(unsigned level) {
  if (level == 0) return spdlog::level::info;
  return level == 1 ? spdlog::level::debug : spdlog::level::trace;
}

bool breaksLine(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 && c != '\t') || byte == 0x7F;
}

/// `message` itself where nothing in it must be escaped, else a view of `storage`.
std::string_view oneLine(std::string_view message, std::string& storage) {
  if (std::none_of(message.begin(), message.end(), breaksLine)) return message;
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (const char c : message) {
    if (!breaksLine(c)) {
      storage += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    storage.append("\\x").append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 0xF]);
  }
  return storage;
}

/// Where the process's lines go.
class Router {
 public:
  /// Never destroyed, so that the last destructor of the process can still log.
  static Router& instance() {
    static Router& router = *new Router;
    return router;
  }

  void write(const Log& log, unsigned level, std::string_view message) {
    std::string storage;
    const std::string_view text = oneLine(message, storage);
    const std::lock_guard guard(mutex_);
    const spdlog::details::log_msg line(std::chrono::system_clock::now(), spdlog::source_loc{},
                                        spdlog::string_view_t(log.name().data(), log.name().size()), nativeLevel(level),
                                        spdlog::string_view_t(text.data(), text.size()));
    // The lock is recursive: a line that comes while the sink runs comes from the sink itself.
    if (!inSink_) {
      try {
        if (file_) {
          file_->log(line);
          file_->flush();
          return;
        }
        if (function_) {
          call(LogRecord{line.time, level, log.category(), log.name(), message, {}}, line);
          return;
        }
      } catch (...) {  // the standard error takes the line
      }
    }
    toStandardError(line);
  }

  void setFunction(std::function<void(const LogRecord&)> function) {
    auto next = function ? std::make_shared<Function>(std::move(function)) : nullptr;
    const std::lock_guard guard(mutex_);
    function_.swap(next);  // what stood before dies after the lock is free
    file_.reset();
  }

  void setFile(const std::string& path) {
    auto next = std::make_shared<spdlog::sinks::basic_file_sink_st>(path);
    next->set_formatter(lineFormatter(spdlog::details::os::default_eol));
    const std::lock_guard guard(mutex_);
    file_ = std::move(next);
    function_.reset();
  }

 private:
  using Function = std::function<void(const LogRecord&)>;

  Router() = default;

  /// Through the C library, which knows where a program has pointed its standard error meanwhile. (A handle of Windows
  /// that was kept from the start would be closed then, and the lines lost.)
  void toStandardError(const spdlog::details::log_msg& line) {
    spdlog::memory_buf_t buffer;
    formatter_->format(line, buffer);
    buffer.push_back('\n');
    std::fwrite(buffer.data(), 1, buffer.size(), stderr);
    std::fflush(stderr);
  }

  void call(LogRecord record, const spdlog::details::log_msg& line) {
    struct Inside {
      explicit Inside(bool& flag) : flag_(flag) { flag_ = true; }
      ~Inside() { flag_ = false; }
      Inside(const Inside&) = delete;
      Inside& operator=(const Inside&) = delete;
      bool& flag_;
    };
    spdlog::memory_buf_t buffer;
    formatter_->format(line, buffer);
    record.line = std::string_view(buffer.data(), buffer.size());
    const std::shared_ptr<Function> function = function_;  // the sink may replace itself
    const Inside inside(inSink_);
    (*function)(record);
  }

  std::recursive_mutex mutex_;
  bool inSink_ = false;
  std::shared_ptr<Function> function_;
  std::shared_ptr<spdlog::sinks::sink> file_;
  std::unique_ptr<spdlog::formatter> formatter_ = lineFormatter("");
};

#ifdef _WIN32
struct PlainNumbers {};
#else
/// Keeps a host's locale out of the formatted numbers, for this thread and as long as it lives.
class PlainNumbers {
 public:
  PlainNumbers() {
    static const locale_t plain = newlocale(LC_NUMERIC_MASK, "C", nullptr);
    if (plain != locale_t{}) previous_ = uselocale(plain);
  }
  ~PlainNumbers() {
    if (previous_ != locale_t{}) uselocale(previous_);
  }
  PlainNumbers(const PlainNumbers&) = delete;
  PlainNumbers& operator=(const PlainNumbers&) = delete;

 private:
  locale_t previous_{};
};
#endif

std::string_view withoutLineEnd(std::string_view text) {
  if (text.ends_with('\n')) text.remove_suffix(1);
  if (text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

std::atomic<unsigned> highestLevel{0};

}  // namespace

struct LogRegistry {
  static LogRegistry& instance() {
    static LogRegistry& registry = *new LogRegistry;
    return registry;
  }

  Log* get(std::string_view name, LogCategory category) {
    const std::lock_guard guard(mutex);
    auto found = logs.find(name);
    if (found == logs.end()) {
      std::unique_ptr<Log> log(new Log(std::string(name), category));
      found = logs.emplace(std::string(name), std::move(log)).first;
    }
    return found->second.get();
  }

  std::mutex mutex;
  std::map<std::string, std::unique_ptr<Log>, std::less<>> logs;
};

Log* Log::getLog(const char* name, LogCategory category) {
  return LogRegistry::instance().get(name != nullptr ? name : "log", category);
}

void Log::trace(unsigned level, const char* format, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, format);
  vtrace(level, format, arguments);
  va_end(arguments);
}

void Log::vtrace(unsigned level, const char* format, std::va_list arguments) noexcept {
  if ((level != 0 && level > getLevel()) || format == nullptr) return;
  std::va_list again;
  va_copy(again, arguments);
  try {
    std::array<char, 512> brief{};
    std::string lengthy;
    std::string_view message;
    {
      [[maybe_unused]] const PlainNumbers plain;
      const int size = std::vsnprintf(brief.data(), brief.size(), format, arguments);
      const auto length = static_cast<std::size_t>(size);
      if (size < 0) {
        message = format;  // better than nothing: says which line was meant
      } else if (length < brief.size()) {
        message = std::string_view(brief.data(), length);
      } else {
        lengthy.resize(length);
        std::vsnprintf(lengthy.data(), length + 1, format, again);
        message = lengthy;
      }
    }
    Router::instance().write(*this, level, withoutLineEnd(message));
  } catch (...) {  // a line is not worth the caller's life
  }
  va_end(again);
}

void Log::setLevel(unsigned level) noexcept { highestLevel.store(level, std::memory_order_relaxed); }

unsigned Log::getLevel() noexcept { return highestLevel.load(std::memory_order_relaxed); }

void Log::setSink(std::function<void(const LogRecord&)> sink) { Router::instance().setFunction(std::move(sink)); }

bool Log::logToFile(const std::string& path) {
  try {
    Router::instance().setFile(path);
    return true;
  } catch (const spdlog::spdlog_ex&) {
    return false;
  }
}

}  // namespace poker
