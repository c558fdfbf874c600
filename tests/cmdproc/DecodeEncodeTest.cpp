#include <hostkit/Batch.h>
#include <hostkit/CommandFactory.h>
#include <tests/cmdproc/Ran.h>
#include <tests/inspect/RandomFrame.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace poker::test {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string kKeepAlive("\x0A\x00\x00\x00\x80\x02\x05\x00\x00\x00", 10);
constexpr const char* kKeepAliveLine = "{\"command\":\"ClKeepAlive\",\"fields\":{\"sequenceNumber\":5}}\n";

void append(std::string& stream, std::span<const std::uint8_t> bytes) {
  stream.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

/// Commands of all classes with random values, some of them in batches.
std::string randomStream(std::uint64_t seed, int rounds, std::uint64_t& commands) {
  std::mt19937_64 random(seed);
  std::string stream, waiting;
  SerializeCommandBuf buffer(1024), batchBuffer(1024);
  const auto flush = [&] {
    const auto batch = packBatch({reinterpret_cast<const std::uint8_t*>(waiting.data()), waiting.size()}, batchBuffer);
    if (batch.empty()) {
      stream += waiting;
    } else {
      append(stream, batch);
    }
    waiting.clear();
  };
  for (int round = 0; round < rounds; ++round) {
    for (const CommandClass& row : CommandFactory::classes()) {
      if (row.name() == "SrvCompressedCommands") continue;
      const CommandHandle<> command(row.create());
      RandomFields values(random());
      if (!assignRandom(*command, values)) continue;
      append(waiting, encodeCommand(*command, buffer));
      ++commands;
      if (random() % 8 == 0) flush();
    }
    flush();
  }
  return stream;
}

TEST(DecodeEncode, GivesTheBytesBackOfRandomCommandsOfAllClasses) {
  std::uint64_t commands = 0;
  const std::string stream = randomStream(7, 80, commands);
  ASSERT_GT(commands, 10'000u);
  const TempFolder folder;
  writeFile(folder.file("stream"), stream);
  const Ran decoded = cmdproc("decode --json --show-secrets " + folder.file("stream"));
  EXPECT_EQ(decoded.status, 0) << decoded.err;
  EXPECT_THAT(decoded.err, HasSubstr("WARNING"));
  writeFile(folder.file("lines"), decoded.out);
  const Ran encoded = cmdproc("encode --clear-secrets " + folder.file("lines"));
  EXPECT_EQ(encoded.status, 0) << encoded.err;
  EXPECT_TRUE(encoded.out == stream);

  // The same through hexadecimal text.
  const Ran hex = cmdproc("encode --clear-secrets --hex " + folder.file("lines"));
  EXPECT_EQ(std::count(hex.out.begin(), hex.out.end(), '\n'), std::count(decoded.out.begin(), decoded.out.end(), '\n'));
  EXPECT_TRUE(cmdproc("decode --hex --json --show-secrets", hex.out).out == decoded.out);
}

TEST(DecodeEncode, CompressesTheCommandsOfABatchThatHasNoBodyOfItsOwn) {
  std::string inside;
  for (int i = 0; i < 20; ++i) {
    inside +=
        (i == 0 ? "" : ",") + std::string("{\"command\":\"SrvKeepAliveReply\",\"fields\":{\"sequenceNumber\":7}}");
  }
  const std::string line =
      "{\"command\":\"SrvCompressedCommands\",\"fields\":{\"realSize\":0,\"body\":\"\"},\"commands\":[" + inside +
      "]}\n";
  const Ran encoded = cmdproc("encode", line);
  EXPECT_EQ(encoded.status, 0) << encoded.err;
  EXPECT_LT(encoded.out.size(), 50u);
  const Ran decoded = cmdproc("decode --json", encoded.out);
  EXPECT_THAT(decoded.out, HasSubstr("\"realSize\":200,"));
  EXPECT_THAT(decoded.out, HasSubstr("\"commands\":[" + inside + "]"));
  // What the fields carry counts more than what stands beside them.
  EXPECT_EQ(cmdproc("encode", decoded.out).out, encoded.out);
  // One that cannot be opened is told as what it is, nothing of it is lost, and the stream goes on behind it.
  std::string damaged = encoded.out;
  damaged[20] ^= 0x55;
  for (const std::string& strange :
       {damaged,
        cmdproc("encode --hex", R"({"command":"SrvCompressedCommands","fields":{"realSize":0,"body":""}})").out}) {
    const std::string stream =
        (strange == damaged ? damaged : strange) + (strange == damaged ? kKeepAlive : "0A000000 8002 05000000");
    const std::string form = strange == damaged ? "" : " --hex";
    const Ran told = cmdproc("decode --json --show-secrets" + form, stream);
    EXPECT_EQ(told.status, 1);
    EXPECT_THAT(told.err, HasSubstr("cmdproc: offset 0: SrvCompressedCommands: the batch is damaged"));
    EXPECT_THAT(told.out, HasSubstr("\"problem\":\"the batch is damaged"));
    EXPECT_THAT(told.out, testing::EndsWith(kKeepAliveLine));
    EXPECT_EQ(cmdproc("decode --json --show-secrets", cmdproc("encode", told.out).out).out, told.out);
  }
}

TEST(Decode, TellsWhereAStreamCannotBeRead) {
  struct Case {
    const char* hex;
    const char* error;
    const char* rest;  // what --keep-going still reads behind it
  };
  const std::string good = "0A000000 8002 05000000 ";
  for (const Case& c : {
           Case{"09000000 8002 050000",
                "offset 10: ClKeepAlive: CommandBuf::readNumber - bufSize == 0 (sequenceNumber at byte 16: takes 4 "
                "bytes, "
                "3 are left)",
                kKeepAliveLine},
           Case{"0B000000 8002 05000000 00",
                "offset 10: ClKeepAlive: has bytes behind its last field (at byte 20: 1 bytes are left behind the last "
                "field)",
                kKeepAliveLine},
           Case{"06000000 0109", "offset 10: family 9, code 1: names no command", kKeepAliveLine},
           Case{"05000000 80", "offset 10: a frame of 5 bytes is below the minimum of 6", ""},
           Case{"FFFFFFFF 80", "offset 10: a frame of 4294967295 bytes is above the limit of 67108864", ""},
           Case{"4", "offset 10: line 1: 'x' that is no hexadecimal digit", ""},
       }) {
    SCOPED_TRACE(c.hex);
    const std::string bad = c.hex + std::string(std::string_view(c.hex) == "4" ? "x" : "");
    const Ran ran = cmdproc("decode --hex --json", good + bad);
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out, kKeepAliveLine);
    EXPECT_EQ(ran.err, std::string("cmdproc: ") + c.error + '\n');
    const Ran on = cmdproc("decode --hex --json --keep-going", good + bad + ' ' + good);
    EXPECT_EQ(on.status, 1);
    EXPECT_EQ(on.out, std::string(kKeepAliveLine) + c.rest);
    EXPECT_EQ(on.err, ran.err);
  }
  const Ran ended = cmdproc("decode", kKeepAlive + kKeepAlive.substr(0, 7));
  EXPECT_EQ(
      ended.err,
      "cmdproc: offset 10: ClKeepAlive: the stream ends within a frame, after 7 bytes of it: CommandBuf::readNumber - "
      "bufSize == 0 (sequenceNumber at byte 16: takes 4 bytes, 1 are left)\n");
  EXPECT_EQ(cmdproc("decode --hex", "0A 0").err,
            "cmdproc: offset 0: the hexadecimal text ends in the middle of a byte\n");
  EXPECT_EQ(cmdproc("decode --hex --json", "# all of it\n0a00 0000 80\t02\r\n05 00#tail\n0000").out, kKeepAliveLine);
}

TEST(Decode, AnnotatesEveryByteAndPointsAtTheDamage) {
  const Ran whole = cmdproc("decode --hex --annotate", "0A000000 8002 05000000");
  EXPECT_THAT(whole.out, HasSubstr("       6 | 05 00 00 00 "));
  EXPECT_THAT(whole.out, HasSubstr("| 5                             | sequenceNumber\n"));
  const Ran damaged = cmdproc("decode --hex --annotate", "1000 0000 7702 03 E204000000000000 02 01");
  EXPECT_EQ(damaged.status, 1);
  EXPECT_THAT(damaged.out, HasSubstr("| 12.50                         | money\n"));
  EXPECT_THAT(damaged.err, HasSubstr("within a frame"));
  const Ran cut = cmdproc("decode --hex --annotate", "1000 0000 7702 03 E204000000000000 00");
  EXPECT_THAT(cut.out,
              HasSubstr("^ ClSitDown fails here, at offset 16 with 0 bytes remaining: CommandBuf::readNumber"));
}

TEST(Encode, RefusesWhatIsNoCommandAndTellsTheLine) {
  const auto keepAlive = [](const std::string& fields) {
    return "{\"command\":\"ClKeepAlive\",\"fields\":" + fields + "}";
  };
  struct Case {
    std::string line, error;
  };
  for (const Case& c : {
           Case{"{", "JSON: syntax error at byte 2"},
           Case{"[]", "JSON: takes an object"},
           Case{"{}", "there is no \"command\" that names a class"},
           Case{R"({"command":"ClNothing","fields":{}})", "no command class is called \"ClNothing\""},
           Case{R"({"command":"ClKeepAlive"})", "there are no \"fields\""},
           Case{R"({"command":"ClKeepAlive","fields":3})", "\"fields\" takes an object"},
           Case{keepAlive("{}"), "ClKeepAlive: sequenceNumber: is missing"},
           Case{keepAlive(R"({"sequenceNumber":1,"more":2})"), "ClKeepAlive: more: there is no such field"},
           Case{keepAlive(R"({"sequenceNumber":4294967296})"),
                "ClKeepAlive: sequenceNumber: 4294967296 is out of range for u32"},
           Case{R"({"command":"ClSendUserPass","fields":{"password":"***"}})",
                "ClSendUserPass: password: the secret is masked by \"***\"; decode with secrets shown"},
       }) {
    const Ran ran = cmdproc("encode", kKeepAliveLine + c.line + '\n' + kKeepAliveLine);
    EXPECT_EQ(ran.status, 1) << c.line;
    EXPECT_EQ(ran.err, "cmdproc: line 2: " + c.error + '\n');
    EXPECT_EQ(ran.out, kKeepAlive);
    const Ran on = cmdproc("encode --keep-going", kKeepAliveLine + c.line + '\n' + kKeepAliveLine);
    EXPECT_EQ(on.status, 1);
    EXPECT_EQ(on.out, kKeepAlive + kKeepAlive);
  }
  const std::string_view withoutEnd(kKeepAliveLine, std::string_view(kKeepAliveLine).size() - 1);
  EXPECT_EQ(cmdproc("encode", "\n  \r\n" + std::string(withoutEnd)).out, kKeepAlive);
}

/// Sets every secret to a word that stands nowhere else.
class SecretWord : public RandomFields {
 public:
  using RandomFields::RandomFields;
  void text(const Field& field, std::string& value) override {
    value = field.secret ? "Xyzzy-7731" : "plain";
    secrets += field.secret ? 1 : 0;
  }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override {
    value.assign(field.size != 0 && !field.count ? field.size : 12, field.secret ? 0xE7 : 0x11);
    secrets += field.secret ? 1 : 0;
  }
  int secrets = 0;
};

TEST(Secrets, AreMaskedInEveryFormUnlessAskedFor) {
  int classes = 0;
  std::string stream;
  SerializeCommandBuf buffer(1024);
  for (const CommandClass& row : CommandFactory::classes()) {
    if (row.name() == "SrvCompressedCommands") continue;  // follows below
    SecretWord values(row.code());
    const CommandHandle<> command(row.create());
    assignRandom(*command, values);
    if (values.secrets == 0) continue;
    ++classes;
    append(stream, encodeCommand(*command, buffer));
  }
  // The reason that tells the player the new PIN.
  const Ran pin = cmdproc("encode", R"({"command":"SrvLogonError","fields":{"code":15,"newPin":"Xyzzy-7731"}})");
  stream += pin.out;
  // A batch that holds it: nothing in clear, and nothing to inflate.
  const std::string batch =
      cmdproc("encode", R"({"command":"SrvCompressedCommands","fields":{"realSize":0,"body":""},"commands":[)"
                        R"({"command":"SrvLogonError","fields":{"code":15,"newPin":"Xyzzy-7731"}}]})")
          .out;
  stream += batch;
  EXPECT_THAT(cmdproc("decode --json", batch).out, HasSubstr("\"body\":\"***\"},\"commands\":[{"));
  EXPECT_THAT(cmdproc("encode", cmdproc("decode --json", batch).out).err, HasSubstr("body: the secret is masked"));
  EXPECT_GE(classes, 8);
  for (const char* form : {"decode", "decode --json", "decode --annotate", "stats", "stats --json"}) {
    const Ran masked = cmdproc(form, stream);
    EXPECT_EQ(masked.status, 0) << form << masked.err;
    EXPECT_THAT(masked.out, Not(HasSubstr("Xyzzy"))) << form;
    EXPECT_THAT(masked.out, Not(HasSubstr("E7 E7"))) << form;
    EXPECT_THAT(masked.out, Not(HasSubstr("E7E7"))) << form;
    EXPECT_THAT(masked.out, Not(HasSubstr("58 79 7A"))) << form;
    // Damage does not uncover them.
    const Ran damaged = cmdproc(std::string(form) + " --max-frame 1000", stream.substr(0, stream.size() - 3));
    EXPECT_THAT(damaged.out + damaged.err, Not(testing::AnyOf(HasSubstr("Xyzzy"), HasSubstr("58 79 7A")))) << form;
  }
  EXPECT_THAT(cmdproc("decode --show-secrets", stream).out, HasSubstr("Xyzzy-7731"));
}

TEST(Program, EndsWithTwoAfterAMistakeAndWithoutOutput) {
  for (const char* arguments :
       {"", "frob", "decode --frob", "decode /no/such/file", "decode /", "describe ClNothing", "texts ClKeepAlive",
        "texts SrvPasswordError 300", "texts SrvSitError 15 --set frob=1", "decode --json --annotate", "--frob"}) {
    const Ran ran = cmdproc(arguments);
    EXPECT_EQ(ran.status, 2) << arguments;
    EXPECT_EQ(ran.out, "") << arguments;
    EXPECT_NE(ran.err, "") << arguments;
  }
  EXPECT_EQ(std::system((std::string(CMDPROC_PROGRAM) + " list >/dev/full 2>&1").c_str()) >> 8, 2);
  EXPECT_EQ(cmdproc("--help").status, 0);
  EXPECT_EQ(cmdproc("decode").status, 0);  // nothing at all is a stream too
}

TEST(Texts, TellWhatThePlayerReads) {
  EXPECT_THAT(cmdproc("texts SrvErrorDisconnected 1 5").out, testing::StartsWith("1: "));
  EXPECT_THAT(cmdproc("texts SrvSitError 15 --set money=12.50 --json").out, HasSubstr("(12.50)"));
  const Ran all = cmdproc("texts SrvTourRegisterResult");
  EXPECT_THAT(all.out, HasSubstr("\nany other: (nothing)\n"));
  EXPECT_THAT(
      cmdproc("decode --json",
              cmdproc("encode", R"({"command":"SrvPasswordError","fields":{"reasonID":0,"shouldClose":false}})").out)
          .out,
      HasSubstr("\"text\":\""));
}

}  // namespace
}  // namespace poker::test
