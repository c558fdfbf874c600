#include <tools/cmdproc/input/TcpInput.h>
#include <tools/cmdproc/input/TcpStreams.h>

#include <pcap/pcap.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace poker::cmdproc {

namespace {

struct ClosePcap {
  void operator()(pcap_t* capture) const { pcap_close(capture); }
};

FilePtr copyOf(FileBytes& bytes) {
  FilePtr copy(std::tmpfile());
  std::vector<std::uint8_t> space(256 * 1024);
  while (copy != nullptr) {
    const std::size_t size = bytes.read(space);
    if (size == 0) {
      std::rewind(copy.get());
      return copy;
    }
    if (std::fwrite(space.data(), 1, size, copy.get()) < size) break;
  }
  throw std::runtime_error("no room for a copy of " + bytes.name() + ": " + std::generic_category().message(errno));
}

class TcpInput final : public FrameSource {
 public:
  TcpInput(std::unique_ptr<FileBytes> file, std::uint32_t longestFrame)
      : name_(file->name()),
        size_(file->size()),
        streams_(longestFrame, [](const std::string& note) { std::fprintf(stderr, "cmdproc: %s\n", note.c_str()); }) {
    FilePtr source;
    if (size_) {
      source.reset(std::fopen(name_.c_str(), "rb"));
      if (source == nullptr) throw std::runtime_error(name_ + ": " + std::generic_category().message(errno));
    } else {
      source = copyOf(*file);
      size_ = file->position();
    }
    char error[PCAP_ERRBUF_SIZE];
    capture_.reset(pcap_fopen_offline_with_tstamp_precision(source.get(), PCAP_TSTAMP_PRECISION_NANO, error));
    if (capture_ == nullptr) throw std::runtime_error(name_ + ": " + error);
    source.release();  // NOLINT(bugprone-unused-return-value): pcap_close() closes it
    if (const int link = pcap_datalink(capture_.get()); !isKnownLink(link)) {
      const char* link_name = pcap_datalink_val_to_name(link);
      throw std::runtime_error(name_ + ": packets of the link type " +
                               (link_name != nullptr ? link_name : std::to_string(link)) + " cannot be read");
    }
  }

  bool next(CapturedFrame& frame) override {
    for (;;) {
      if (streams_.next(frame)) {
        number_ = frame.number;
        return true;
      }
      if (ended_) {
        if (problem_.empty()) return false;
        told_ = std::exchange(problem_, {});
        frame = {.number = number_ + 1, .problem = told_};
        return true;
      }
      readPacket();
    }
  }
  std::uint64_t position() const override {
    const long position = std::ftell(pcap_file(capture_.get()));
    return position < 0 ? 0 : static_cast<std::uint64_t>(position);
  }
  std::optional<std::uint64_t> size() const override { return size_; }

 private:
  void readPacket() {
    pcap_pkthdr* head = nullptr;
    const std::uint8_t* bytes = nullptr;
    const int result = pcap_next_ex(capture_.get(), &head, &bytes);
    if (result != 1) {
      if (result != PCAP_ERROR_BREAK) problem_ = pcap_geterr(capture_.get());
      ended_ = true;
      streams_.finish();
      return;
    }
    // With that precision it is nanoseconds, whatever the field's name.
    const std::int64_t time = std::int64_t{head->ts.tv_sec} * 1'000'000'000 + head->ts.tv_usec;
    if (auto segment = segmentIn(pcap_datalink(capture_.get()), std::span(bytes, head->caplen))) {
      streams_.take(std::move(*segment), time);
    }
  }

  std::string name_;
  std::optional<std::uint64_t> size_;
  std::unique_ptr<pcap_t, ClosePcap> capture_;
  TcpStreams streams_;
  std::uint64_t number_ = 0;
  bool ended_ = false;
  std::string problem_;
  std::string told_;
};

}  // namespace

std::unique_ptr<FrameSource> openTcpCapture(std::unique_ptr<FileBytes> file, std::uint32_t longestFrame) {
  return std::make_unique<TcpInput>(std::move(file), longestFrame);
}

}  // namespace poker::cmdproc
