#pragma once

#include <pcap/pcap.h>

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include <tests/support/WireBytes.h>

namespace poker::test {

/// Writes a capture of TCP connections, or of exported PDUs that name the dissector "cmdproc".
class DissectorCapture {
 public:
  enum class Kind : int { Tcp = DLT_RAW, ExportedPdus = DLT_WIRESHARK_UPPER_PDU };
  static constexpr std::uint16_t kServerPort = 4000;

  DissectorCapture(const std::filesystem::path& file, Kind kind)
      : pcap_(pcap_open_dead(static_cast<int>(kind), 1 << 18)), dumper_(pcap_dump_open(pcap_, file.c_str())) {
    if (dumper_ == nullptr) throw std::runtime_error(pcap_geterr(pcap_));
  }
  ~DissectorCapture() {
    pcap_dump_close(dumper_);
    pcap_close(pcap_);
  }
  DissectorCapture(const DissectorCapture&) = delete;
  DissectorCapture& operator=(const DissectorCapture&) = delete;

  /// One segment of a stream.
  /// @param offset   of the bytes in the stream
  /// @param missing  so many bytes of the packet's end are not in the capture
  void segment(std::uint16_t clientPort, std::uint32_t offset, std::span<const std::uint8_t> bytes,
               std::uint32_t missing = 0) {
    constexpr std::size_t kHeaders = 20 + 20;
    packet_.clear();
    add({0x45, 0}, std::uint16_t(kHeaders + bytes.size()), std::uint16_t{1}, std::uint16_t{0});
    add({64, 6}, std::uint16_t{0});  // TCP; a check sum of zero is not checked
    add({127, 0, 0, 1, 127, 0, 0, 1}, clientPort, kServerPort, std::uint32_t{1} + offset, std::uint32_t{1});
    add({0x50, 0x18}, std::uint16_t{0xFFFF}, std::uint16_t{0}, std::uint16_t{0});
    packet_.insert(packet_.end(), bytes.begin(), bytes.end());
    dump(missing);
  }
  /// A stream cut into segments of so many bytes.
  void stream(std::uint16_t clientPort, std::span<const std::uint8_t> bytes, std::size_t size) {
    for (std::size_t at = 0; at < bytes.size(); at += size) {
      segment(clientPort, static_cast<std::uint32_t>(at), bytes.subspan(at, std::min(size, bytes.size() - at)));
    }
  }

  void exportedPdu(std::span<const std::uint8_t> frame) {
    packet_.clear();
    const std::string name = "cmdproc";
    add({}, std::uint16_t{12}, std::uint16_t(name.size() + 1));
    packet_.insert(packet_.end(), name.c_str(), name.c_str() + name.size() + 1);  // eight bytes: no padding
    add({}, std::uint16_t{24}, std::uint16_t{4}, std::uint32_t{2});               // the ports are of TCP
    add({}, std::uint16_t{0}, std::uint16_t{0});
    packet_.insert(packet_.end(), frame.begin(), frame.end());
    dump(0);
  }

 private:
  /// Bytes, then numbers in network order.
  template <class... Numbers>
  void add(std::initializer_list<std::uint8_t> bytes, Numbers... numbers) {
    packet_.insert(packet_.end(), bytes);
    (addNumber(numbers), ...);
  }
  template <class Number>
  void addNumber(Number number) {
    for (std::size_t i = sizeof(Number); i-- != 0;) packet_.push_back(static_cast<std::uint8_t>(number >> 8 * i));
  }
  void dump(std::uint32_t missing) {
    const auto size = static_cast<std::uint32_t>(packet_.size());
    pcap_pkthdr header{};
    header.ts.tv_sec = ++packets_;
    header.caplen = size - missing;
    header.len = size;
    pcap_dump(reinterpret_cast<u_char*>(dumper_), &header, packet_.data());
  }

  pcap_t* pcap_;
  pcap_dumper_t* dumper_;
  Bytes packet_;
  int packets_ = 0;
};

}  // namespace poker::test
