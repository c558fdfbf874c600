#pragma once

#include <inspect/capture/PcapngWriter.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace poker {

/// A capture that is being written to a file. Whole blocks go there, so that others can read it meanwhile. One thread.
class PcapngFile {
 public:
  /// Makes the file, which must not be there yet, with its section header.
  /// @throws std::runtime_error  it is there, or cannot be written
  PcapngFile(const std::string& path, std::string_view application);
  /// Writes what waits, if it can.
  ~PcapngFile();
  PcapngFile(const PcapngFile&) = delete;
  PcapngFile& operator=(const PcapngFile&) = delete;

  /// Adds a frame. It is in the file when much waits to be written, or after flush().
  /// @throws std::runtime_error  see flush()
  void write(const CapturedFrame& frame, const FrameEnds& ends);
  /// Whether something waits to be written.
  bool hasWaiting() const { return !writer_.blocks().empty(); }
  /// @throws std::runtime_error  the file cannot be written, for example because the disk is full. It then ends with the
  ///                             last block that is whole, and takes no more.
  void flush();

  const std::string& path() const { return path_; }

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::string path_;
  PcapngWriter writer_;
  std::unique_ptr<std::FILE, Close> file_;  // null once writing has failed
  std::uint64_t size_ = 0;                  // of the file
};

}  // namespace poker
