#include <examples/holdem/server/capture/FrameRecorder.h>

#include <examples/holdem/shared/LogLine.h>
#include <inspect/CommandText.h>

#include <chrono>
#include <exception>

namespace poker::holdem {

namespace {

constexpr std::chrono::seconds kLongestDelay(1);

}  // namespace

FrameRecorder::FrameRecorder(asio::io_context& context, const std::string& path)
    : log_(*Log::getLog("holdem.record", LogCategory::Network)), timer_(context) {
  file_.emplace(path, "holdem-server");
  logLine(log_, 0, "recording file={}", quoted(path));
}

void FrameRecorder::onFrame(const CapturedFrame& frame, const FrameEnds& ends) {
  guarded([&] {
    file_->write(frame, ends);
    ++frames_;
    flushSoon();
  });
}

void FrameRecorder::finish() {
  timer_.cancel();
  guarded([&] {
    file_->flush();
    logLine(log_, 0, "recorded frames={} file={}", frames_, quoted(file_->path()));
    file_.reset();
  });
}

void FrameRecorder::flushSoon() {
  if (flushDue_) return;
  flushDue_ = true;
  timer_.expires_after(kLongestDelay);
  timer_.async_wait([this](const std::error_code& cancelled) {
    flushDue_ = false;
    if (!cancelled) guarded([&] { file_->flush(); });
  });
}

/// Nothing that goes wrong with the recording is to reach the game.
template <class Work>
void FrameRecorder::guarded(Work&& work) {
  if (!file_) return;
  try {
    work();
  } catch (const std::exception& error) {
    file_.reset();
    logLine(log_, 0, "recording-ended frames={} error={}", frames_, quoted(error.what()));
  }
}

}  // namespace poker::holdem
