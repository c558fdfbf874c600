#include <CommandProcessor/commands/lobby/LobbyCommands.h>
#include <CommandProcessor/types/FieldJson.h>
#include <CommandProcessor/wire/SrvCompressedCommands.h>
#include <hostkit/CommandHandle.h>
#include <tests/support/AllocationCounter.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>

namespace poker::test {
namespace {

template <class T>
CommandHandle<T> readBack(const T& command) {
  auto read = CommandHandle<T>::create();
  EXPECT_EQ(decode(*read, bodyOf(command)), "");
  return read;
}

TEST(SrvOneUser, SendsTheLow16BitsOfTheGame) {
  const auto command = make<SrvOneUser>(70000u);
  EXPECT_EQ(command->gameID(), 70000u);
  EXPECT_EQ(readBack(*command)->gameID(), 4464u);
}

// What the golden lines, which name each field, cannot see.
TEST(LobbyInits, PutLikeArgumentsInTheirOwnFields) {
  EXPECT_EQ(fieldsToJson(*make<ClGetServerInfo>(std::uint16_t{1}, std::uint16_t{2}, 3u)),
            R"({"requestedType":1,"oldType":2,"version":3})");
  EXPECT_EQ(fieldsToJson(*make<ClGetGameInfo>(1u, 2u, 3u)), R"({"gameID":1,"oldGameID":2,"version":3})");
  const auto wait = make<ClAddGlobalWaitList>(std::uint16_t{1}, RealMoneyType::fromHundredths(2),
                                              RealMoneyType::fromHundredths(3), 4, 5, true);
  EXPECT_EQ(fieldsToJson(*wait),
            R"({"gameType":1,"lowBet":"0.02","highBet":"0.03","minPlayers":4,"maxPlayers":5,"realMoney":true})");
}

// ---- texts by key

TEST(TextsByKey, AreEmptyOrNotThere) {
  const auto news = make<SrvNews>();
  news->addMsg(5, "old");
  news->addMsg(5, "new");
  news->addMsg(-1, nullptr);
  EXPECT_STREQ(news->news(5), "new");
  EXPECT_STREQ(news->news(-1), "");
  EXPECT_EQ(news->news(6), nullptr);

  const auto map = make<SrvStringMapCommand>();
  map->addPair("key", "old");
  map->addPair("key", "new");
  map->addPair(nullptr, nullptr);
  EXPECT_STREQ(map->getValue("key"), "new");
  EXPECT_STREQ(map->getValue(""), "");
  EXPECT_STREQ(map->getValue(nullptr), "");
  EXPECT_EQ(map->getValue("Key"), nullptr);
}

// ---- compressed batches

const std::string kText = "fold call raise fold call raise fold call raise fold call raise ";
// What another program made of it, with zlib's default level.
constexpr auto kBody = "78 9C 4B CB CF 49 51 48 4E CC C9 51 28 4A CC 2C 4E 55 48 23 91 0F 00 EB EE 16 D5";

CommandHandle<SrvCompressedCommands> batch(std::uint32_t realSize, const Bytes& body) {
  SerializeCommandBuf buf(16);
  buf << realSize << static_cast<std::uint32_t>(body.size());
  buf.append(body.data(), static_cast<std::uint32_t>(body.size()));
  auto command = CommandHandle<SrvCompressedCommands>::create();
  EXPECT_EQ(decode(*command, written(buf)), "");
  EXPECT_EQ(command->realSize(), realSize);
  EXPECT_EQ(command->compressedSize(), body.size());
  EXPECT_EQ(command->lastZlibResult(), Z_OK);
  return command;
}

/// Unpacks into room for just the announced bytes, and returns those that were produced.
std::string unpacked(SrvCompressedCommands& command) {
  std::string room(command.realSize() + 1, '\x5A');
  command.getUncompressedData(reinterpret_cast<unsigned char*>(room.data()));
  EXPECT_EQ(room.back(), '\x5A') << "written beyond the announced size";
  EXPECT_LT(command.realSize(), room.size());
  EXPECT_EQ(command.compressedSize(), 0u);
  return room.substr(0, command.realSize());
}

CommandHandle<SrvCompressedCommands> compressed(const std::string& text) {
  return make<SrvCompressedCommands>(reinterpret_cast<const unsigned char*>(text.data()),
                                     static_cast<unsigned>(text.size()));
}

std::string noise(std::size_t size) {  // which no compression makes shorter
  std::string text(size, '\0');
  std::uint32_t state = 1;
  for (char& c : text) c = static_cast<char>((state = state * 1664525u + 1013904223u) >> 24);
  return text;
}

TEST(SrvCompressedCommands, ReturnsWhatItWasGiven) {
  for (const std::string& text : {std::string(), std::string(1, '\0'), kText, noise(1000), std::string(1 << 20, 'x')}) {
    const auto command = compressed(text);
    EXPECT_EQ(command->realSize(), text.size());
    // Read without this library.
    const Bytes bytes = bodyOf(*command);
    std::string plain(text.size() + 1, '\0');
    auto size = static_cast<uLongf>(plain.size());
    ASSERT_EQ(uncompress(reinterpret_cast<Bytef*>(plain.data()), &size, bytes.data() + 8,
                         static_cast<uLong>(bytes.size() - 8)),
              Z_OK);
    EXPECT_EQ(plain.substr(0, size), text);

    const auto read = readBack(*command);
    EXPECT_EQ(unpacked(*read), text);
    EXPECT_EQ(read->lastZlibResult(), Z_OK);
  }
  EXPECT_EQ(toHex(bodyOf(*make<SrvCompressedCommands>(nullptr, 5u))),
            "00 00 00 00 08 00 00 00 78 9C 03 00 00 00 00 01");
}

TEST(SrvCompressedCommands, ReadsWhatAnotherProgramWroteAndReportsEveryWayInWhichABodyIsWrong) {
  const auto size = static_cast<std::uint32_t>(kText.size());
  const Bytes body = hex(kBody);
  const auto unpack = [](std::uint32_t announced, const Bytes& bytes) {
    const auto command = batch(announced, bytes);
    const std::string text = unpacked(*command);
    EXPECT_EQ(text, kText.substr(0, text.size()));
    return std::pair(command->lastZlibResult(), text.size());
  };
  EXPECT_EQ(unpack(size, body), std::pair(Z_OK, kText.size()));
  // Where the result or the length alone would pass.
  Bytes damaged = body;
  damaged.back() ^= 1;
  EXPECT_EQ(unpack(size, damaged), std::pair(Z_DATA_ERROR, kText.size()));
  EXPECT_EQ(unpack(size - 1, body), std::pair(Z_BUF_ERROR, kText.size() - 1));
  EXPECT_EQ(unpack(size + 1, body), std::pair(Z_OK, kText.size()));
  EXPECT_NE(unpack(0, body).first, Z_OK);
  for (std::size_t cut = 0; cut < body.size(); ++cut) {
    EXPECT_NE(unpack(size, Bytes(body.data(), body.data() + cut)).first, Z_OK) << cut;
  }
  damaged = body;
  damaged.front() ^= 1;
  EXPECT_EQ(unpack(size, damaged), std::pair(Z_DATA_ERROR, std::size_t{0}));
}

TEST(SrvCompressedCommands, UnpacksOnceAndForgetsTheResultWithItsBatch) {
  const auto command = compressed(kText);
  EXPECT_EQ(unpacked(*command), kText);
  command->init(reinterpret_cast<const unsigned char*>(kText.data()), 64);
  EXPECT_EQ(unpacked(*command), kText);
  std::string again(kText.size(), '\x5A');
  command->getUncompressedData(reinterpret_cast<unsigned char*>(again.data()));
  EXPECT_EQ(again, std::string(kText.size(), '\x5A'));
  EXPECT_EQ(command->realSize(), 0u);
  EXPECT_NE(command->lastZlibResult(), Z_OK);
  EXPECT_EQ(decode(*command, bodyOf(*compressed(kText))), "");
  EXPECT_EQ(command->lastZlibResult(), Z_OK);
  EXPECT_EQ(decode(*command, hex("05 00 00")), kNumberFails);
  EXPECT_EQ(command->realSize(), 0u);
  EXPECT_EQ(command->compressedSize(), 0u);
}

TEST(SrvCompressedCommands, HasRoomForEverySize) {
  using Batch = SrvCompressedCommands;
  static_assert(Batch::compressionRoom(0) == 13 && Batch::compressionRoom(9) == 22);
  static_assert(Batch::compressionRoom(1000) == 1113 && Batch::compressionRoom(0xFFFFFFFF) == 4724464037);
  for (std::uint64_t size = 1; size <= 0xFFFFFFFF; size = size * 3 / 2 + 1) {
    EXPECT_GE(Batch::compressionRoom(static_cast<std::uint32_t>(size)), size + (size >> 12) + (size >> 14) + 13)
        << size;
  }
}

TEST(SrvCompressedCommands, RunsOutOfMemoryAsABatchOfNothing) {
  CachedCmdCreator<SrvCompressedCommands>::clearCache();
  const auto command = CommandHandle<SrvCompressedCommands>::create();
  EXPECT_EQ(decode(*command, hex("05 00 00 00 01 00 00 00 78")), "");
  command->setConnID(3);
  bool struck = false;
  {
    const FailingAllocations none(0);
    try {
      command->init(reinterpret_cast<const unsigned char*>(kText.data()), 64);
    } catch (const std::bad_alloc&) {
      struck = none.struck();
    }
  }
  if (!struck) GTEST_SKIP() << "allocations cannot be made to fail here";
  EXPECT_EQ(toHex(bodyOf(*command)), "00 00 00 00 00 00 00 00");
  EXPECT_TRUE(command->connections().empty());
}

}  // namespace
}  // namespace poker::test
