#include <CommandProcessor/pool/DebugStaticLogger.h>
#include <LogUtil/Log.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <new>
#include <thread>

#ifdef _WIN32
#include <windows.h>
#elif defined(__linux__)
#include <unistd.h>
#endif

namespace poker {

namespace {

constexpr unsigned kDumpLevel = 0;

std::uint32_t currentThreadId() {
#ifdef _WIN32
  return static_cast<std::uint32_t>(GetCurrentThreadId());
#elif defined(__linux__)
  return static_cast<std::uint32_t>(gettid());
#else
  return static_cast<std::uint32_t>(std::hash<std::thread::id>()(std::this_thread::get_id()));
#endif
}

// Sums that wrap as 32-bit counters do.
std::int32_t wrappingSum(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

}  // namespace

// One thread at a time counts, under the pool's lock; a dump reads without that lock.
void DebugStaticLogger::DebugStaticLoggerData::add(std::size_t objectSize) noexcept {
  std::atomic_ref(bytes).store(wrappingSum(bytes, static_cast<std::int32_t>(objectSize)), std::memory_order_relaxed);
  std::atomic_ref(count).store(wrappingSum(count, 1), std::memory_order_relaxed);
}

DebugStaticLogger::DebugStaticLoggerData DebugStaticLogger::DebugStaticLoggerData::now() const noexcept {
  auto& shared = const_cast<DebugStaticLoggerData&>(*this);
  DebugStaticLoggerData seen;
  seen.bytes = std::atomic_ref(shared.bytes).load(std::memory_order_relaxed);
  seen.count = std::atomic_ref(shared.count).load(std::memory_order_relaxed);
  return seen;
}

DebugStaticLogger::DebugStaticLogger() = default;
DebugStaticLogger::~DebugStaticLogger() = default;

DebugStaticLogger::DebugStaticLogger(const DebugStaticLogger& other) {
  const std::lock_guard guard(other.lock_);
  dataByType_ = other.dataByType_;
}

DebugStaticLogger& DebugStaticLogger::operator=(const DebugStaticLogger& other) {
  if (this == &other) return *this;
  const std::scoped_lock guard(lock_, other.lock_);
  dataByType_ = other.dataByType_;
  return *this;
}

DebugStaticLogger* DebugStaticLogger::instance() {
  alignas(DebugStaticLogger) static unsigned char place[sizeof(DebugStaticLogger)];
  static auto* const theOne = new (place) DebugStaticLogger;
  return theOne;
}

void DebugStaticLogger::addSizeForType(const std::string& typeName, const DebugStaticLoggerData* data) {
  const std::lock_guard guard(lock_);
  dataByType_[typeName] = data;
}

void DebugStaticLogger::dumpDataIntoLog(const char* logName) {
  const std::lock_guard guard(lock_);
  Log* log = Log::getLog(logName != nullptr ? logName : defaultLogName_, static_cast<LogCategory>(0));
  log->trace(kDumpLevel, "DebugStaticLogger::dumpDataIntoLog : dump (threadID=%x): \n", currentThreadId());
  if (dataByType_.empty()) {
    log->trace(kDumpLevel, "\t <<< no data found >>>");
    return;
  }
  DebugStaticLoggerData total;
  for (const auto& [typeName, data] : dataByType_) {
    const DebugStaticLoggerData now = data->now();
    log->trace(kDumpLevel, "\t command type = %s \t memory = %i (%i)", typeName.c_str(), now.bytes, now.count);
    total.bytes = wrappingSum(total.bytes, now.bytes);
    total.count = wrappingSum(total.count, now.count);
  }
  log->trace(kDumpLevel, "Total: bytes = %i (%i)", total.bytes, total.count);
}

}  // namespace poker
