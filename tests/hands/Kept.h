#pragma once

#include <tests/holdem/Place.h>

#include <examples/holdem/server/capture/FrameObserver.h>
#include <inspect/hands/HandRecorder.h>
#include <tools/cmdproc/input/HandReader.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace poker::test {

/// A frame that outlives its capture.
struct KeptFrame {
  std::vector<std::uint8_t> bytes;
  std::uint64_t number = 0;
  std::uint64_t offset = 0;
  std::int64_t time = 0;
  CommandDirection direction = CommandDirection::ServerToClient;
  std::string connection;
  std::string table;

  CapturedFrame view() const {
    return {.bytes = bytes,
            .number = number,
            .offset = offset,
            .time = time,
            .direction = direction,
            .connection = connection,
            .table = table};
  }
};

/// Hands frames to a recorder as the tool does, at once.
class Audited {
 public:
  std::vector<HandFinding> findings;
  std::uint64_t hands = 0;
  std::uint64_t parts = 0;
  std::function<void(const RecordedHand&)> onHand;

  void take(const CapturedFrame& frame) {
    const std::string problem = tryToTake(frame);
    if (!problem.empty()) ADD_FAILURE() << problem;
  }
  std::string tryToTake(const CapturedFrame& frame) { return reader_.take(frame); }
  void finish() { recorder_.finish(); }
  std::string lines() const {
    std::string text;
    for (const HandFinding& finding : findings) text += finding.line() + '\n';
    return text;
  }

 private:
  HandRecorder recorder_{[this](const RecordedHand& hand) {
                           ++(hand.isWhole() ? hands : parts);
                           findings.insert(findings.end(), hand.findings().begin(), hand.findings().end());
                           if (onHand) onHand(hand);
                         },
                         [this](const HandFinding& finding) { findings.push_back(finding); }};
  cmdproc::HandReader reader_{recorder_};
};

}  // namespace poker::test
