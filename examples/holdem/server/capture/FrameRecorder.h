#pragma once

#include <LogUtil/Log.h>
#include <examples/holdem/server/capture/FrameObserver.h>
#include <inspect/capture/PcapngFile.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace poker::holdem {

/// Writes the frames of the server into a capture, without their secrets. Others can read it meanwhile: a second later
/// the frames are there. When the file cannot be written any more the log says so, and the game goes on.
class FrameRecorder final : public FrameObserver {
 public:
  /// @throws std::runtime_error  the file is there already, or cannot be written
  FrameRecorder(asio::io_context& context, const std::string& path);

  void onFrame(const CapturedFrame& frame, const FrameEnds& ends) override;
  /// Writes what waits; frames that come later are passed over. To be called before the io_context has no more work.
  void finish();

 private:
  void flushSoon();
  template <class Work>
  void guarded(Work&& work);

  Log& log_;
  std::optional<PcapngFile> file_;  // none when the recording has ended
  asio::steady_timer timer_;
  bool flushDue_ = false;
  std::uint64_t frames_ = 0;
};

}  // namespace poker::holdem
