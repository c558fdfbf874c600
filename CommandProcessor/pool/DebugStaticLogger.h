#pragma once

#include <CommandProcessor/platform/CriticalSection.h>
#include <CommandProcessor/platform/Export.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace poker {

/// The process-wide register of how much memory each command class's pool ever allocated.
///
/// Lock order: a pool's lock, then this register's; never the other way round.
class COMMANDPROCESSOR_API DebugStaticLogger {
 public:
  /// What a pool ever allocated. The counters never shrink; they wrap as 32-bit numbers do.
  struct COMMANDPROCESSOR_API DebugStaticLoggerData {
    std::int32_t bytes = 0;
    std::int32_t count = 0;

    /// Counts one more object. Under the pool's lock.
    void add(std::size_t objectSize) noexcept;
    /// The counters as they are now. Any thread.
    DebugStaticLoggerData now() const noexcept;
  };

  DebugStaticLogger();
  DebugStaticLogger(const DebugStaticLogger& other);
  DebugStaticLogger& operator=(const DebugStaticLogger& other);
  virtual ~DebugStaticLogger();

  /// The one register of the process. It is made on first use and never destroyed, so that pools may report while the
  /// process starts and ends. Any thread.
  static DebugStaticLogger* instance();

  /// Registers a class's counters, which must live as long as the process. A second registration under one name
  /// replaces the first. Any thread.
  void addSizeForType(const std::string& typeName, const DebugStaticLoggerData* data);

  /// Writes one line a class, in name order, and the totals to the log of that name ("log" when it is null). Counters
  /// of pools in use may stand at slightly different moments. Any thread.
  void dumpDataIntoLog(const char* logName);

 private:
  mutable CriticalSection lock_;
  const char* const defaultLogName_ = "log";
  std::map<std::string, const DebugStaticLoggerData*> dataByType_;
};

}  // namespace poker
