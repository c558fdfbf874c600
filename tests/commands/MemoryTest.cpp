// Memory that runs out at any moment, and secrets that stay in memory: for every class.

#include <CommandProcessor/wire/CommandDeserializeException.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Decode.h>
#include <hostkit/Encode.h>
#include <inspect/CommandJson.h>
#include <inspect/CommandText.h>
#include <tests/support/AllocationCounter.h>
#include <tests/support/EveryClass.h>
#include <tests/support/RandomFields.h>
#include <tests/support/SchemaBytes.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace poker::test {
namespace {

class Memory : public testing::Test {
 protected:
  void SetUp() override {
    if (!AllocationCounter::counts()) GTEST_SKIP() << "allocations cannot be watched beside the thread sanitizer";
  }
};

/// Runs something with the first allocation failing, then the second, and so on until none fails any more. Nothing but
/// std::bad_alloc may come out, and only when one failed.
/// @param afterwards  called each time, with whether it was done
/// @return how many times it failed
int failEach(const std::function<void()>& operation, const std::function<void(bool done)>& afterwards) {
  for (int allowed = 0;; ++allowed) {
    bool struck = false, done = false;
    {
      const FailingAllocations failing(static_cast<std::size_t>(allowed));
      try {
        operation();
        done = true;
      } catch (const std::bad_alloc&) {
      }
      struck = failing.struck();
    }
    EXPECT_TRUE(done || struck) << "out of memory without reason";
    afterwards(done);
    if (!struck) return allowed;
  }
}

TEST_F(Memory, RunsOutAnywhereAndNothingIsLostOrLeftBroken) {
  int failures = 0;
  for (const ClassUnderTest& its : everyClass()) {
    SCOPED_TRACE(its.name());
    const Bytes message = schemaBytes(*its.schema, {.elements = 20, .text = 60});
    { const CommandHandle<> warm(its.fields->create()); }  // the class is registered, its pool's ring is there
    its.clearPool();
    std::string expected;
    {
      const CommandHandle<> command(its.fields->create());
      ASSERT_EQ(decode(*command, {message.begin() + 2, message.end()}), "");
      expected = shown(*command);
    }
    its.clearPool();
    const AllocationCounter memory;

    const auto read = [](PokerCommandI& command, const Bytes& bytes) {
      DeserializeCommandBuf in(bytes.data() + 2, static_cast<std::uint32_t>(bytes.size()) - 2);
      command.deserialize(in);
    };
    const auto isWhole = [&](PokerCommandI& command) {
      read(command, message);
      EXPECT_EQ(shown(command), expected);
    };

    // From the pool; the object is there or nothing is.
    PokerCommandI* command = nullptr;
    failures +=
        failEach([&] { command = &its.fields->create(); }, [&](bool done) { EXPECT_EQ(done, command != nullptr); });
    // init, with texts to hold.
    failures += failEach([&] { its.initFull(*command); }, [&](bool) { EXPECT_EQ(its.idle(), 0u); });
    isWhole(*command);
    // Decoding, into an object that holds nothing, also from bytes that end early.
    for (const std::size_t cut : {message.size(), message.size() - 1}) {
      PokerCommandI* fresh = nullptr;
      failures += failEach(
          [&] {
            DeserializeCommandBuf in(message.data() + 2, static_cast<std::uint32_t>(cut) - 2);
            fresh = &its.fields->create();
            try {
              fresh->deserialize(in);
            } catch (CommandDeserializeException* thrown) {
              delete thrown;
            }
          },
          [&](bool) {
            if (fresh == nullptr) return;
            isWhole(*fresh);
            fresh->release();
            fresh = nullptr;
            EXPECT_EQ(its.idle(), 1u);
            its.clearPool();
          });
    }
    // The same by a host, which answers and does not throw.
    if (its.isReceived()) {
      bool answered = false;
      failures += failEach(
          [&] {
            const DecodeResult result = decodeCommand(message, {its.host->direction(), true, true});
            answered = static_cast<bool>(result) || result.error.kind == DecodeError::Kind::OutOfMemory;
          },
          [&](bool done) {
            EXPECT_TRUE(done && answered);
            EXPECT_LE(its.idle(), 1u);
            its.clearPool();
          });
    }
    // Encoding: only the buffer grows.
    SerializeCommandBuf buffer(64);
    EXPECT_EQ(failEach([&] { encodeCommand(*command, buffer); }, [&](bool done) { EXPECT_TRUE(done); }), 0);
    // A clone, with receivers beyond those that stand in the object; the original is as it was.
    {
      const std::string before = shown(*command);  // some tell the time when they are encoded
      for (int id = 1; id <= 100; ++id) command->setConnID(id);
      PokerCommandI* clone = nullptr;
      failures += failEach([&] { clone = command->clone(); },
                           [&](bool done) {
                             EXPECT_EQ(done, clone != nullptr);
                             if (clone != nullptr) {
                               EXPECT_EQ(shown(*clone), before);
                               EXPECT_EQ(clone->connections().size(), 100u);
                               clone->release();
                               clone = nullptr;
                             }
                             EXPECT_LE(its.idle(), 1u) << "given back twice";
                             its.clearPool();
                             EXPECT_EQ(shown(*command), before);
                           });
    }
    // Another receiver.
    int added = 100;
    failures += failEach([&] { command->setConnID(++added); },
                         [&](bool done) {
                           EXPECT_EQ(command->connections().size(), done ? 101u : 100u);
                           if (!done) --added;
                         });
    command->clearConnections();
    // A queue of its own takes it or leaves it.
    {
      Queue<PokerCommandI*> queue(false);
      failures +=
          failEach([&] { queue.tsPush(command); }, [&](bool done) { EXPECT_EQ(queue.tsSize(), done ? 1u : 0u); });
      EXPECT_EQ(queue.tsGet(), command);
    }
    // Giving back always succeeds.
    EXPECT_EQ(failEach([&] { command->release(); }, [&](bool done) { EXPECT_TRUE(done); }), 0);
    EXPECT_EQ(its.idle(), 1u);
    its.clearPool();
    EXPECT_EQ(memory.alive(), 0) << "leaked";
  }
  std::printf("%d allocations failed\n", failures);
  EXPECT_GT(failures, 1000);
}

/// Puts one text into every secret field; all else is random.
class SecretFields : public RandomFields {
 public:
  explicit SecretFields(std::string_view secret) : RandomFields(1), secret_(secret) {}
  void text(const Field& field, std::string& value) override {
    if (field.secret)
      value = secret_;
    else
      RandomFields::text(field, value);
    inField(field);
  }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override {
    if (field.secret)
      value.assign(secret_.begin(), secret_.end());
    else
      RandomFields::bytes(field, value);
    inField(field);
  }
  std::size_t beginList(const Field&, std::size_t) override { return 3; }
  std::size_t beginMap(const Field&, std::size_t) override { return 3; }
  int count() const { return count_; }

 private:
  void inField(const Field& field) { count_ += field.secret ? 1 : 0; }

  std::string_view secret_;
  int count_ = 0;
};

// In objects, inside short strings and out of them, in lists and maps, in what half-read messages leave, and in all
// memory that was given back on the way.
TEST_F(Memory, HoldsNoSecretOnceWiped) {
  const std::string mark = "s3cr3t!";
  const auto markBytes = std::as_bytes(std::span(mark));
  const std::span<const std::uint8_t> needle(reinterpret_cast<const std::uint8_t*>(markBytes.data()), mark.size());
  for (const ClassUnderTest& its : everyClass()) {
    if (!its.schema->hasSecrets()) continue;
    SCOPED_TRACE(its.name());
    std::vector<Bytes> messages;
    for (const std::string& secret : {mark, mark + std::string(100, '.') + mark, mark}) {
      const CommandHandle<> command(its.fields->create());
      SecretFields fields(secret);
      its.fields->assign(*command, fields);
      ASSERT_GT(fields.count(), 0);
      messages.push_back(encode(*command));
    }
    its.clearPool();

    const auto read = [](PokerCommandI& command, const Bytes& bytes, std::size_t size) {
      DeserializeCommandBuf in(bytes.data() + 2, static_cast<std::uint32_t>(size) - 2);
      messageOf([&] { command.deserialize(in); });
    };
    const BlockWatch watch(needle);
    PokerCommandI* command = &its.fields->create();
    for (const Bytes& message : messages) {
      read(*command, message, message.size());
      EXPECT_GT(watch.holding(), 0u) << "the test finds no secret where there is one";
      PokerCommandI* const clone = command->clone();
      its.host->wipeSecrets(*command);
      its.host->wipeSecrets(*clone);
      EXPECT_EQ(watch.holding(), 0u);
      clone->release();
      for (std::size_t size = 2; size < message.size(); ++size) {
        read(*command, message, size);
        its.host->wipeSecrets(*command);
        EXPECT_EQ(watch.holding(), 0u) << "of the first " << size << " bytes";
      }
      command->release();
      its.clearPool();
      command = &its.fields->create();
    }
    EXPECT_EQ(watch.found(), 0u) << "in memory that was given back";
    // Without a word between a longer one and a shorter one, as when a buffer's commands are read into one object.
    for (const Bytes& message : messages) read(*command, message, message.size());
    its.host->wipeSecrets(*command);
    EXPECT_EQ(watch.holding(), 0u);
    command->release();
    its.clearPool();
  }
}

void addSecrets(std::set<std::string>& names, const std::string& path, const std::vector<SchemaField>& fields) {
  for (const SchemaField& field : fields) {
    const std::string name = field.name.empty() ? path : path + '.' + field.name;
    if (field.secret) names.insert(name);
    addSecrets(names, name, field.fields);
  }
}

TEST(Secrets, AreTheseAndNoTextOfThemIsShown) {
  std::set<std::string> names;
  for (const ClassUnderTest& its : everyClass()) {
    addSecrets(names, std::string(its.name()), its.schema->fields);
    const CommandHandle<> command(its.fields->create());
    SecretFields fields("s3cr3t!");
    try {
      its.fields->assign(*command, fields);
    } catch (const FieldValueError&) {
      continue;  // some of the others do not take every number
    }
    if (fields.count() == 0) continue;
    const std::string json = commandJson(*command);
    EXPECT_EQ((json + fieldsAsText(*command)).find("s3cr3t!"), std::string::npos) << its.name();
    its.host->wipeSecrets(*command);
    EXPECT_EQ(commandJson(*command), json) << "more than the secrets was wiped";
  }
  EXPECT_EQ(names, (std::set<std::string>{
                       "ClConnectGame.password", "ClLogon.password", "ClMakeNewAccount.accountInfo.password",
                       "ClMiscChnagePassword.newPassword", "ClMiscChnagePassword.oldPassword",
                       "ClMiscSetupAccount.securityAnswer", "ClMyNewScreenName.password", "ClMyNewScreenName.pinCode",
                       "ClSSLHandshakeData.data", "ClSendUserPass.password", "ClTourRegister.password",
                       "ClValidateEmail.emailCode", "SrvCompressedCommands.body", "SrvCreditCardInfo.cards.number",
                       "SrvLogonError.newPin", "SrvSSLHandshakeData.data", "SrvSessionCreated.sessionID"}));
}

}  // namespace
}  // namespace poker::test
