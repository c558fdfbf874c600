// The core workloads beside what they are measured against, in one run: a plain-struct encoder and decoder of the same
// bytes, new and delete, a mutex with a deque, a mutex with a condition variable, a switch.
//
// A process with one thread lets the C library leave out atomic instructions, and every lock looks free: a second
// thread is parked for as long as the benchmarks run.

#include "Conversation.h"

#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/CmdDispatcher.h>
#include <CommandProcessor/core/CommandsResult.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>
#include <CommandProcessor/pool/Queue.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>

#include <benchmark/benchmark.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace poker::bench {
namespace {

/// The frames of the conversation, without their length slots.
std::vector<std::vector<std::uint8_t>> frames() {
  std::vector<std::vector<std::uint8_t>> result;
  for (const PlainMessage& message : plainConversation()) {
    std::vector<std::uint8_t> frame(256);
    frame.resize(encodeByHand(message, frame.data(), frame.size()));
    result.push_back(frame);
  }
  return result;
}

/// Items are messages, so that every figure is the time of one message.
void countMessages(benchmark::State& state, std::size_t perIteration) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(perIteration));
}

void encodeLibrary(benchmark::State& state) {
  std::vector<PokerCommandI*> commands;
  for (const PlainMessage& message : plainConversation()) commands.push_back(&makeCommand(message));
  SerializeCommandBuf buf(256);
  for (auto _ : state) {
    for (const PokerCommandI* command : commands) {
      buf.reset();
      command->serialize(buf);
      std::uint32_t size;
      benchmark::DoNotOptimize(buf.finish(size));
      benchmark::ClobberMemory();
    }
  }
  countMessages(state, commands.size());
  for (PokerCommandI* command : commands) command->release();
}

void encodeByHandBench(benchmark::State& state) {
  const auto messages = plainConversation();
  std::array<std::uint8_t, 256> buffer;
  for (auto _ : state) {
    for (const PlainMessage& message : messages) {
      const std::size_t size = encodeByHand(message, buffer.data() + 4, buffer.size() - 4) + 4;
      wire::storeLittleEndian(buffer.data(), static_cast<std::uint32_t>(size));
      benchmark::DoNotOptimize(buffer.data());
      benchmark::ClobberMemory();
    }
  }
  countMessages(state, messages.size());
}

void decodeLibrary(benchmark::State& state) {
  const auto bytes = frames();
  for (auto _ : state) {
    for (const auto& frame : bytes) {
      PokerCommandI& command = takeCommand(frame[1], frame[0]);
      DeserializeCommandBuf buf(frame.data() + 2, static_cast<std::uint32_t>(frame.size() - 2));
      command.deserialize(buf);
      benchmark::DoNotOptimize(&command);
      command.release();
    }
  }
  countMessages(state, bytes.size());
}

void decodeByHandBench(benchmark::State& state) {
  const auto bytes = frames();
  PlainMessage message;
  for (auto _ : state) {
    for (const auto& frame : bytes) {
      benchmark::DoNotOptimize(decodeByHand(frame.data(), frame.size(), message));
      benchmark::ClobberMemory();
    }
  }
  countMessages(state, bytes.size());
}

void roundTripLibrary(benchmark::State& state) {
  const auto messages = plainConversation();
  SerializeCommandBuf out(256);
  for (auto _ : state) {
    for (const PlainMessage& message : messages) {
      PokerCommandI& sent = makeCommand(message);
      out.reset();
      sent.serialize(out);
      std::uint32_t size;
      const std::uint8_t* bytes = out.finish(size);
      sent.release();
      PokerCommandI& received = takeCommand(bytes[5], bytes[4]);
      DeserializeCommandBuf in(bytes + 6, size - 6);
      received.deserialize(in);
      benchmark::DoNotOptimize(&received);
      received.release();
    }
  }
  countMessages(state, messages.size());
}

void roundTripByHand(benchmark::State& state) {
  const auto messages = plainConversation();
  std::array<std::uint8_t, 256> buffer;
  PlainMessage sent, received;
  for (auto _ : state) {
    for (const PlainMessage& message : messages) {
      sent = message;
      benchmark::DoNotOptimize(&sent);
      const std::size_t size = encodeByHand(sent, buffer.data(), buffer.size());
      benchmark::ClobberMemory();
      benchmark::DoNotOptimize(decodeByHand(buffer.data(), size, received));
      benchmark::ClobberMemory();
    }
  }
  countMessages(state, messages.size());
}

// --- pool: eight objects taken and given back, as a turn of a host's loop does
// -------------------------------------------

constexpr std::size_t kHeld = 8;

void poolLibrary(benchmark::State& state) {
  std::array<ClKeepAlive*, kHeld> held;
  for (auto _ : state) {
    for (auto& command : held) {
      command = &CachedCmdCreator<ClKeepAlive>::create();
      benchmark::DoNotOptimize(command);
    }
    for (auto* command : held) command->release();
  }
  countMessages(state, kHeld);
}

void poolNewDelete(benchmark::State& state) {
  struct Object {
    virtual ~Object() = default;
    unsigned char body[sizeof(ClKeepAlive) - sizeof(void*)];
  };
  std::array<Object*, kHeld> held;
  for (auto _ : state) {
    for (auto& object : held) {
      object = new Object;
      benchmark::DoNotOptimize(object);
    }
    for (auto* object : held) delete object;
  }
  countMessages(state, kHeld);
}

template <class T>
class MutexDeque {
 public:
  void push(T* item) {
    const std::lock_guard guard(mutex_);
    items_.push_back(item);
  }
  T* get() {
    const std::lock_guard guard(mutex_);
    if (items_.empty()) return nullptr;
    T* item = items_.front();
    items_.pop_front();
    return item;
  }

 private:
  std::mutex mutex_;
  std::deque<T*> items_;
};

void poolMutexDeque(benchmark::State& state) {
  struct Object {
    unsigned char body[sizeof(ClKeepAlive)];
  };
  static MutexDeque<Object> pool;
  std::array<Object*, kHeld> held;
  for (auto _ : state) {
    for (auto& object : held) {
      object = pool.get();
      if (object == nullptr) object = new Object;
      benchmark::DoNotOptimize(object);
    }
    for (auto* object : held) pool.push(object);
  }
  countMessages(state, kHeld);
  if (state.thread_index() == 0) {
    while (Object* object = pool.get()) delete object;
  }
}

// --- queue -----------------------------------------------------------------------------------------------------------

void queueLibrary(benchmark::State& state) {
  Queue<int*> queue(false);
  int item = 0;
  for (auto _ : state) {
    queue.tsPush(&item);
    benchmark::DoNotOptimize(queue.tsGet());
  }
  countMessages(state, 1);
}

void queueMutexDeque(benchmark::State& state) {
  MutexDeque<int> queue;
  int item = 0;
  for (auto _ : state) {
    queue.push(&item);
    benchmark::DoNotOptimize(queue.get());
  }
  countMessages(state, 1);
}

void pushWhileSet(benchmark::State& state) {
  Queue<int*> queue(true);
  int item = 0;
  queue.tsPush(&item);
  for (auto _ : state) {
    queue.tsPush(&item);
    benchmark::DoNotOptimize(queue.tsGet());
  }
  countMessages(state, 1);
}

constexpr int kBatch = 20000;

void oneToOneLibrary(benchmark::State& state) {
  for (auto _ : state) {
    Queue<int*> queue(true);
    std::thread consumer([&] {
      AutoResetEvent& event = *queue.getInEvent();
      for (int got = 0; got < kBatch;) {
        event.wait();
        while (queue.tsGet() != nullptr) ++got;
      }
    });
    int item = 0;
    for (int i = 0; i < kBatch; ++i) queue.tsPush(&item);
    consumer.join();
  }
  countMessages(state, kBatch);
}

void oneToOneConditionVariable(benchmark::State& state) {
  for (auto _ : state) {
    std::mutex mutex;
    std::condition_variable wakeUp;
    std::deque<int*> items;
    std::thread consumer([&] {
      std::unique_lock lock(mutex);
      for (int got = 0; got < kBatch; ++got) {
        wakeUp.wait(lock, [&] { return !items.empty(); });
        items.pop_front();
      }
    });
    int item = 0;
    for (int i = 0; i < kBatch; ++i) {
      {
        const std::lock_guard guard(mutex);
        items.push_back(&item);
      }
      wakeUp.notify_one();
    }
    consumer.join();
  }
  countMessages(state, kBatch);
}

// --- dispatch --------------------------------------------------------------------------------------------------------

struct Server final : ClientCmdProcessor {
  bool processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) override {
    command.process(results, *this);
    return true;
  }
  void onClHandShake(Results&, ClHandShake&) override { ++count; }
  void onClKeepAlive(Results&, ClKeepAlive&) override { ++count; }
  void onClPing(Results&, ClPing&) override { ++count; }
  void onClBye(Results&, ClBye&) override { ++count; }
  Results results;
  std::uint64_t count = 0;
};

struct Client final : SrvCmdProcessor {
  bool processCommand(PokerCommandTmpl<SrvCmdProcessorType>& command) override {
    command.process(results, *this);
    return true;
  }
  void onSrvHandShaked(Results&, SrvHandShaked&) override { ++count; }
  void onSrvKeepAliveReply(Results&, const SrvKeepAliveReply&) override { ++count; }
  void onSrvMaintenance(Results&, const SrvMaintenance&) override { ++count; }
  void onNotAvail(Results&, ServiceNotAvailable&) override { ++count; }
  void onSrvNewClientVersionAvail(Results&, const SrvNewClientVersionAvail&) override { ++count; }
  void onSrvErrorDisconnected(Results&, SrvErrorDisconnected&) override { ++count; }
  Results results;
  std::uint64_t count = 0;
};

void dispatchLibrary(benchmark::State& state) {
  std::vector<PokerCommandI*> commands;
  for (const PlainMessage& message : plainConversation()) commands.push_back(&makeCommand(message));
  Server server;
  Client client;
  CmdDispatcher dispatcher;
  dispatcher.registerClientCmdProcessor(server);
  dispatcher.registerSrvCmdProcessor(client, true);
  for (auto _ : state) {
    for (PokerCommandI* command : commands) benchmark::DoNotOptimize(dispatcher.dispatchCommand(*command));
  }
  benchmark::DoNotOptimize(server.count + client.count);
  countMessages(state, commands.size());
  for (PokerCommandI* command : commands) command->release();
}

void dispatchSwitch(benchmark::State& state) {
  const auto messages = plainConversation();
  std::array<std::uint64_t, PlainMessage::kKinds> counts{};
  for (auto _ : state) {
    for (const PlainMessage& message : messages) {
      switch (message.kind) {
        case PlainMessage::HandShake:
          counts[0] += message.number;
          break;
        case PlainMessage::HandShaked:
          ++counts[1];
          break;
        case PlainMessage::KeepAlive:
          counts[2] ^= message.number;
          break;
        case PlainMessage::KeepAliveReply:
          counts[3] -= message.number;
          break;
        case PlainMessage::Ping:
          counts[4] += message.first;
          break;
        case PlainMessage::Maintenance:
          counts[5] += message.length;
          break;
        case PlainMessage::NewServer:
          counts[6] ^= message.length;
          break;
        case PlainMessage::NewVersion:
          counts[7] += message.second;
          break;
        case PlainMessage::Disconnected:
          counts[8] |= message.number;
          break;
        case PlainMessage::Bye:
          ++counts[9];
          break;
        case PlainMessage::kKinds:
          break;
      }
      benchmark::ClobberMemory();
    }
    benchmark::DoNotOptimize(counts.data());
  }
  countMessages(state, messages.size());
}

BENCHMARK(encodeByHandBench)->Name("encode/by_hand");
BENCHMARK(encodeLibrary)->Name("encode/library");
BENCHMARK(decodeByHandBench)->Name("decode/by_hand");
BENCHMARK(decodeLibrary)->Name("decode/library");
BENCHMARK(roundTripByHand)->Name("round_trip/by_hand");
BENCHMARK(roundTripLibrary)->Name("round_trip/library");
BENCHMARK(poolMutexDeque)->Name("pool/mutex_deque");
BENCHMARK(poolNewDelete)->Name("pool/new_delete");
BENCHMARK(poolLibrary)->Name("pool/library");
BENCHMARK(poolMutexDeque)->Name("pool_two_threads/mutex_deque")->Threads(2)->UseRealTime();
BENCHMARK(poolNewDelete)->Name("pool_two_threads/new_delete")->Threads(2)->UseRealTime();
BENCHMARK(poolLibrary)->Name("pool_two_threads/library")->Threads(2)->UseRealTime();
BENCHMARK(queueMutexDeque)->Name("queue/mutex_deque");
BENCHMARK(queueLibrary)->Name("queue/library");
BENCHMARK(pushWhileSet)->Name("queue/library_event_set");
BENCHMARK(oneToOneConditionVariable)->Name("queue_one_to_one/condition_variable")->UseRealTime();
BENCHMARK(oneToOneLibrary)->Name("queue_one_to_one/library")->UseRealTime();
BENCHMARK(dispatchSwitch)->Name("dispatch/switch");
BENCHMARK(dispatchLibrary)->Name("dispatch/library");

/// Keeps a thread alive that does nothing.
class ParkedThread {
 public:
  ParkedThread() : thread_([this] { stop_.wait(false); }) {}
  ~ParkedThread() {
    stop_ = true;
    stop_.notify_one();
    thread_.join();
  }

 private:
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

}  // namespace
}  // namespace poker::bench

int main(int argc, char** argv) {
  const poker::bench::ParkedThread second;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
}
