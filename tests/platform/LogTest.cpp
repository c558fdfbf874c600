#include <LogUtil/Log.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace poker {
namespace {

/// Takes `line` from "2004-05-06T07:08:09.123Z [info] test: " on; 'd' in the pattern is any digit.
std::string_view messageOf(std::string_view line) {
  constexpr std::string_view kHead = "dddd-dd-ddTdd:dd:dd.dddZ [info] test: ";
  const auto matches = [](char pattern, char c) { return pattern == 'd' ? c >= '0' && c <= '9' : c == pattern; };
  if (line.size() < kHead.size() || !std::equal(kHead.begin(), kHead.end(), line.begin(), matches)) {
    return "not a line of the log";
  }
  return line.substr(kHead.size());
}

class LogTest : public testing::Test {
 protected:
  void SetUp() override {
    Log::setSink([this](const LogRecord& record) {
      messages_.emplace_back(record.message);
      lines_.emplace_back(record.line);
    });
  }
  void TearDown() override {
    Log::setSink(nullptr);
    Log::setLevel(0);
  }

  Log& log_ = *Log::getLog("test", LogCategory::Game);
  std::vector<std::string> messages_;
  std::vector<std::string> lines_;
};

TEST_F(LogTest, GivesOneLogPerName) {
  EXPECT_EQ(Log::getLog("test", LogCategory::General), &log_);
  EXPECT_EQ(log_.category(), LogCategory::Game);
  EXPECT_EQ(Log::getLog(nullptr, LogCategory::General), Log::getLog("log", LogCategory::General));
}

TEST_F(LogTest, WritesOneLineARecordWhateverTheMessageHolds) {
  log_.trace(0, "dump (threadID=%x): \n", 0xBEEFu);
  log_.trace(0, "\t<<< no data found >>>");
  log_.trace(0, "forged\r\n2004-01-01T00:00:00.000Z [info] test: \x1b[2J%c\x7f", 'x');
  ASSERT_EQ(lines_.size(), 3u);
  EXPECT_EQ(messages_[0], "dump (threadID=beef): ");
  EXPECT_EQ(messages_[1], "\t<<< no data found >>>");
  EXPECT_EQ(messageOf(lines_[0]), messages_[0]);
  EXPECT_EQ(messageOf(lines_[1]), messages_[1]);
  EXPECT_EQ(messageOf(lines_[2]), "forged\\x0d\\x0a2004-01-01T00:00:00.000Z [info] test: \\x1b[2Jx\\x7f");
}

TEST_F(LogTest, CutsNoMessage) {
  for (const std::size_t size : {0u, 511u, 512u, 513u, 100'000u}) {
    const std::string text(size, 'a');
    log_.trace(0, "%s|%d", text.c_str(), 7);
    EXPECT_EQ(messages_.back(), text + "|7");
  }
}

TEST_F(LogTest, AlwaysWritesLevelZeroAndTheOthersOnDemand) {
  for (const unsigned most : {0u, 2u}) {
    Log::setLevel(most);
    for (const unsigned level : {0u, 1u, 2u, 9u}) log_.trace(level, "%u", level);
  }
  EXPECT_EQ(messages_, (std::vector<std::string>{"0", "0", "1", "2"}));
}

TEST_F(LogTest, SurvivesASinkThatThrowsOrLogs) {
  testing::internal::CaptureStderr();
  Log::setSink([](const LogRecord&) { throw std::runtime_error("full"); });
  log_.trace(0, "one");
  Log::setSink([](const LogRecord&) { throw 5; });
  log_.trace(0, "two");
  Log::setSink([this](const LogRecord&) {
    log_.trace(0, "from inside");
    Log::setSink(nullptr);
  });
  log_.trace(0, "three");
  log_.trace(0, "four");
  const std::string output = testing::internal::GetCapturedStderr();
  for (const char* text : {"test: one\n", "test: two\n", "test: from inside\n", "test: four\n"}) {
    EXPECT_NE(output.find(text), std::string::npos) << text;
  }
  EXPECT_EQ(output.find("three"), std::string::npos);
}

TEST_F(LogTest, LosesNoLinesOfSeveralThreads) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([] {
      for (int i = 0; i < 500; ++i) Log::getLog("threads", LogCategory::General)->trace(0, "%03d", i);
    });
  }
  for (auto& thread : threads) thread.join();
  std::sort(messages_.begin(), messages_.end());
  ASSERT_EQ(messages_.size(), 2'000u);
  for (std::size_t i = 0; i < messages_.size(); ++i) ASSERT_EQ(std::stoul(messages_[i]), i / 4);
}

TEST_F(LogTest, AppendsToAFileAndKeepsTheSinkWhenItCannot) {
  const auto path = std::filesystem::temp_directory_path() / "command-processor-log-test.log";
  std::ofstream(path) << "before\n";
  EXPECT_FALSE(Log::logToFile((path / "below").string()));
  log_.trace(0, "to the sink");
  EXPECT_EQ(messages_.size(), 1u);
  ASSERT_TRUE(Log::logToFile(path.string()));
  log_.trace(0, "to the file\n");
  std::ifstream file(path);
  std::string old, line;
  EXPECT_TRUE(std::getline(file, old) && std::getline(file, line) && file.peek() == EOF);
  EXPECT_EQ(old, "before");
  EXPECT_EQ(messageOf(line), "to the file");
  file.close();
  Log::setSink(nullptr);
  EXPECT_EQ(messages_.size(), 1u);
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace poker
