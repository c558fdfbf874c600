#pragma once

// Captures of TCP connections, made as other programs make them.

#include <pcap/pcap.h>
#include <tins/ip.h>
#include <tins/ipv6.h>
#include <tins/rawpdu.h>
#include <tins/tcp.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <tests/support/WireBytes.h>

namespace poker::test {

struct Side {
  std::string address;
  std::uint16_t port;

  bool isV6() const { return address.find(':') != std::string::npos; }
  std::string text() const { return (isV6() ? '[' + address + ']' : address) + ':' + std::to_string(port); }
};

struct Piece {
  Side from, to;
  std::uint32_t sequence;
  int flags;
  Bytes payload;
  std::size_t missing = 0;  // so many bytes of the packet's end are not in the capture
};

inline Bytes ipPacket(const Piece& piece) {
  Tins::TCP tcp(piece.to.port, piece.from.port);
  tcp.seq(piece.sequence);
  tcp.flags(static_cast<std::uint16_t>(piece.flags));
  const auto packet = [&](auto ip) {
    ip /= tcp;
    if (!piece.payload.empty()) ip /= Tins::RawPDU(piece.payload);
    return ip.serialize();
  };
  return piece.from.isV6() ? packet(Tins::IPv6(piece.to.address, piece.from.address))
                           : packet(Tins::IP(piece.to.address, piece.from.address));
}

inline Bytes linkPacket(int link, const Piece& piece) {
  const std::string type = piece.from.isV6() ? "86 DD" : "08 00";
  std::map<int, std::string> heads = {
      {DLT_EN10MB, "02 00 00 00 00 01 02 00 00 00 00 02 81 00 00 05" + type},  // with a VLAN's tag
      {DLT_LINUX_SLL, "00 00 00 01 00 06 02 00 00 00 00 01 00 00" + type},
      {DLT_LINUX_SLL2, type + "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
      {DLT_NULL, piece.from.isV6() ? "0A 00 00 00" : "02 00 00 00"}};
  Bytes packet = hex(heads[link]);
  const Bytes ip = ipPacket(piece);
  packet.insert(packet.end(), ip.begin(), ip.end());
  if (link == DLT_EN10MB && packet.size() < 70) packet.resize(70);  // short packets are filled up
  return packet;
}

inline constexpr std::int64_t kStart = 1'790'000'000'000'000'000;

/// Writes a capture as libpcap does; a packet each microsecond.
inline void writeCapture(const std::string& path, int link, const std::vector<Piece>& pieces) {
  pcap_t* dead = pcap_open_dead(link, 262144);
  pcap_dumper_t* out = pcap_dump_open(dead, path.c_str());
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const Bytes bytes = linkPacket(link, pieces[i]);
    pcap_pkthdr head{};
    head.ts.tv_sec = kStart / 1'000'000'000 + static_cast<long>(i / 1'000'000);
    head.ts.tv_usec = static_cast<long>(i % 1'000'000);
    head.len = static_cast<bpf_u_int32>(bytes.size());
    head.caplen = static_cast<bpf_u_int32>(bytes.size() - pieces[i].missing);
    pcap_dump(reinterpret_cast<u_char*>(out), &head, bytes.data());
  }
  pcap_dump_close(out);
  pcap_close(dead);
}

}  // namespace poker::test
