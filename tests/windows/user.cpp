// A host on Windows: linked against the DLL, with the system's own calls on the other side of registry, events and threads.

#include "Check.h"

#include <CommandProcessor/commands/session/ClKeepAlive.h>
#include <CommandProcessor/platform/AutoResetEvent.h>
#include <CommandProcessor/platform/CriticalSection.h>
#include <CommandProcessor/platform/VersionStore.h>
#include <CommandProcessor/pool/CachedCmdCreator.h>
#include <CommandProcessor/wire/CommandDeserializeException.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>

#include <windows.h>

#include <cstring>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using namespace poker;

constexpr const char* kSubkey = "Software\\CommandProcessorTests\\User";

void keepsTheVersionInTheRegistry() {
  CHECK(!loadLastVersion(kSubkey));
  CHECK(!storeLastVersion(kSubkey, 5));
  HKEY key = nullptr;
  CHECK(RegCreateKeyA(HKEY_CURRENT_USER, kSubkey, &key) == ERROR_SUCCESS);
  CHECK(!loadLastVersion(kSubkey));
  CHECK(storeLastVersion(kSubkey, 0xFFFFFFFF));
  CHECK(loadLastVersion(kSubkey) == 0xFFFFFFFFu);
  const struct {
    DWORD type, size;
    const char* bytes;
    bool isVersion;
  } values[] = {{REG_DWORD, 4, "\x15\xCD\x5B\x07", true},
                {REG_SZ, 4, "123", false},
                {REG_QWORD, 8, "\x15\xCD\x5B\x07\0\0\0\0", false},
                {REG_BINARY, 4, "\x15\xCD\x5B\x07", false}};
  for (const auto& value : values) {
    CHECK(RegSetValueExA(key, "Last Version", 0, value.type, reinterpret_cast<const BYTE*>(value.bytes), value.size) ==
          ERROR_SUCCESS);
    CHECK(loadLastVersion(kSubkey).has_value() == value.isVersion);
    CHECK(loadLastVersion(kSubkey).value_or(123456789) == 123456789);
  }
  RegCloseKey(key);
  CHECK(RegDeleteKeyA(HKEY_CURRENT_USER, kSubkey) == ERROR_SUCCESS);
}

void countsUnderACriticalSection() {
  static CriticalSection section;
  int sum = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 20'000; ++i) {
        const std::lock_guard outer(section);
        const std::lock_guard inner(section);
        ++sum;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  CHECK(sum == 80'000);
  const std::lock_guard held(section);
  std::thread([] { CHECK(!section.try_lock()); }).join();
}

void isAnEventThatTheSystemWaitsFor() {
  AutoResetEvent items, end;
  const HANDLE handles[] = {end.native(), items.native()};
  CHECK(WaitForMultipleObjects(2, handles, FALSE, 0) == WAIT_TIMEOUT);
  items.set();
  items.set();
  CHECK(WaitForMultipleObjects(2, handles, FALSE, INFINITE) == WAIT_OBJECT_0 + 1);
  CHECK(WaitForSingleObject(items.native(), 20) == WAIT_TIMEOUT);  // taken, however often it was set
  CHECK(SetEvent(items.native()) && items.tryWait() && !items.waitFor(std::chrono::milliseconds(20)));
  items.set();
  end.set();
  CHECK(WaitForMultipleObjects(2, handles, TRUE, INFINITE) == WAIT_OBJECT_0);
  CHECK(!items.tryWait() && !end.tryWait());
}

/// Commands travel through a queue from threads that take them out of the pool to one that gives them back to it.
void handsPooledCommandsFromThreadToThread() {
  constexpr std::uint32_t kProducers = 3;
  constexpr std::uint32_t kEach = 20'000;
  Queue<ClKeepAlive*> queue(true);
  AutoResetEvent end;
  std::vector<std::thread> producers;
  for (std::uint32_t p = 0; p < kProducers; ++p) {
    producers.emplace_back([&] {
      for (std::uint32_t i = 0; i < kEach; ++i) {
        auto& command = CachedCmdCreator<ClKeepAlive>::create();
        command.init(i);
        queue.tsPush(&command);
      }
    });
  }
  std::uint64_t count = 0, sum = 0;
  std::thread consumer([&] {
    const HANDLE handles[] = {queue.getInEvent()->native(), end.native()};
    for (DWORD woken = WAIT_OBJECT_0; woken == WAIT_OBJECT_0;) {
      woken = WaitForMultipleObjects(2, handles, FALSE, 20'000);
      CHECK(woken != WAIT_TIMEOUT && woken != WAIT_FAILED);
      while (ClKeepAlive* const command = queue.tsGet()) {
        ++count;
        sum += command->sequenceNumber();
        command->release();
      }
    }
  });
  for (auto& producer : producers) producer.join();
  end.set();
  consumer.join();
  CHECK(count == kProducers * kEach);
  CHECK(sum == std::uint64_t{kProducers} * kEach * (kEach - 1) / 2);
  CHECK(CachedCmdCreator<ClKeepAlive>::cashedCmds.tsSize() > 0);  // the pool is the DLL's
  CachedCmdCreator<ClKeepAlive>::clearCache();
  CHECK(CachedCmdCreator<ClKeepAlive>::cashedCmds.tsSize() == 0);
}

void writesTheBytesThatAllMachinesWrite() {
  constexpr unsigned char kFrame[] = {0x0A, 0, 0, 0, 0x80, 0x02, 5, 0, 0, 0};
  auto& command = CachedCmdCreator<ClKeepAlive>::create();
  command.init(5);
  SerializeCommandBuf out(4);
  command.serialize(out);
  std::uint32_t size = 0;
  const std::uint8_t* const bytes = out.finish(size);
  CHECK(size == sizeof kFrame && std::memcmp(bytes, kFrame, size) == 0);

  DeserializeCommandBuf in(kFrame + 6, 4);
  command.init(0);
  command.deserialize(in);
  CHECK(command.sequenceNumber() == 5);
  bool threw = false;
  try {  // thrown by the DLL, caught here
    DeserializeCommandBuf cut(kFrame + 6, 3);
    command.deserialize(cut);
  } catch (CommandDeserializeException* thrown) {
    threw = std::unique_ptr<CommandDeserializeException>(thrown)->message() == "CommandBuf::readNumber - bufSize == 0";
  }
  CHECK(threw);
  command.release();
}

}  // namespace

int main() {
  keepsTheVersionInTheRegistry();
  countsUnderACriticalSection();
  isAnEventThatTheSystemWaitsFor();
  handsPooledCommandsFromThreadToThread();
  writesTheBytesThatAllMachinesWrite();
  std::puts("dll_user: all went well");
}
