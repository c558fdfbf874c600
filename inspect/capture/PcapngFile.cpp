#include <inspect/capture/PcapngFile.h>

#include <cerrno>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#endif

namespace poker {

namespace {

constexpr std::size_t kMostWaiting = 256 * 1024;

/// How much of what was written is whole blocks.
std::size_t wholeBlocks(std::span<const std::uint8_t> blocks, std::size_t written) {
  std::size_t whole = 0;
  for (;;) {
    std::size_t length = 0;  // stands behind the type
    for (std::size_t i = 0; i < 4; ++i) length |= std::size_t{blocks[whole + 4 + i]} << 8 * i;
    if (whole + length > written) return whole;
    whole += length;
  }
}

std::string why(const std::string& path, int error) { return path + ": " + std::generic_category().message(error); }

/// Null when it cannot be made, or is there already.
std::FILE* newFile(const char* path) {
#ifdef _WIN32  // where fopen may overwrite it all the same
  const int file = _open(path, _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
  return file < 0 ? nullptr : _fdopen(file, "wb");
#else
  return std::fopen(path, "wbx");
#endif
}

}  // namespace

PcapngFile::PcapngFile(const std::string& path, std::string_view application) : path_(path), writer_(application) {
  file_.reset(newFile(path.c_str()));
  if (file_ == nullptr) throw std::runtime_error(why(path, errno));
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);
  flush();
}

PcapngFile::~PcapngFile() {
  try {
    flush();
  } catch (const std::runtime_error&) {
    // Whoever wants to know flushes before.
  }
}

void PcapngFile::write(const CapturedFrame& frame, const FrameEnds& ends) {
  if (file_ == nullptr) return;
  writer_.write(frame, ends);
  if (writer_.blocks().size() >= kMostWaiting) flush();
}

void PcapngFile::flush() {
  const std::span<const std::uint8_t> blocks = writer_.blocks();
  if (file_ != nullptr && !blocks.empty()) {
    const std::size_t written = std::fwrite(blocks.data(), 1, blocks.size(), file_.get());
    if (written < blocks.size()) {
      const int error = errno;
      file_.reset();
      // Readers stumble over half a block.
      std::error_code ignored;
      std::filesystem::resize_file(path_, size_ + wholeBlocks(blocks, written), ignored);
      writer_.clear();
      throw std::runtime_error(why(path_, error));
    }
    size_ += written;
  }
  writer_.clear();
}

}  // namespace poker
