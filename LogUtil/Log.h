#pragma once

#include <chrono>
#include <cstdarg>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#if defined(_WIN32) && !defined(LOGUTIL_STATIC)
#if defined(LOGUTIL_BUILDING)
#define LOGUTIL_API __declspec(dllexport)
#else
#define LOGUTIL_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define LOGUTIL_API __attribute__((visibility("default")))
#else
#define LOGUTIL_API
#endif

#if defined(__MINGW32__) && !defined(__clang__)
#define LOGUTIL_PRINTF(text, first) __attribute__((format(gnu_printf, text, first)))
#elif defined(__GNUC__)
#define LOGUTIL_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define LOGUTIL_PRINTF(text, first)
#endif

namespace poker {

/// What a log is about, for a host that sorts its records.
enum class LogCategory : int {
  General = 0,
  Network = 1,
  Protocol = 2,
  Game = 3,
  Security = 4,
};

/// One line on its way to a sink. The views last as long as the sink's call.
struct LogRecord {
  std::chrono::system_clock::time_point time;
  unsigned level;
  LogCategory category;
  std::string_view logger;
  std::string_view message;  ///< as it was logged, without the line end that it may have had
  std::string_view line;     ///< as the standard error and the file have it, without line end
};

/// A named source of log lines. Lines go to one place for the whole process: the standard error, until setSink or
/// logToFile names another.
///
/// A line is "2004-05-06T07:08:09.123Z [info] name: message", in UTC; whatever the message holds, it stays one line:
/// control characters other than the tab are written as \x0a. Levels: 0 is always written ("info"); 1 ("debug") and 2
/// and above ("trace") are written when setLevel allows them.
///
/// All functions may be called by any thread at any time, also while static objects are built and destroyed.
class LOGUTIL_API Log {
 public:
  /// The log of that name, which lives as long as the process; the name "log" for null. The category counts when the
  /// name is new. Throws std::bad_alloc.
  static Log* getLog(const char* name, LogCategory category);

  /// Writes one line of any length, formatted as printf does, with the "C" locale's decimal point (on Windows: the
  /// process's locale). Never throws: a line that cannot be written is lost.
  void trace(unsigned level, const char* format, ...) noexcept LOGUTIL_PRINTF(3, 4);
  void vtrace(unsigned level, const char* format, std::va_list arguments) noexcept LOGUTIL_PRINTF(3, 0);

  const std::string& name() const noexcept { return name_; }
  LogCategory category() const noexcept { return category_; }

  /// Lines of a level above this one are dropped. 0 at first.
  static void setLevel(unsigned level) noexcept;
  static unsigned getLevel() noexcept;

  /// Hands every line to `sink` instead, one at a time. Null restores the standard error. When this returns, no other
  /// thread is still inside the sink that stood before. A sink may log: that line goes to the standard error, as does
  /// a line whose sink throws. It must not wait for a thread that logs.
  static void setSink(std::function<void(const LogRecord&)> sink);

  /// Appends every line to the file instead, at once. False, and nothing changed, when the file cannot be opened.
  static bool logToFile(const std::string& path);

  Log(const Log&) = delete;
  Log& operator=(const Log&) = delete;

 private:
  friend struct LogRegistry;
  Log(std::string name, LogCategory category) : name_(std::move(name)), category_(category) {}

  const std::string name_;
  const LogCategory category_;
};

}  // namespace poker
