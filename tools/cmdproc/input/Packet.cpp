#include <tools/cmdproc/input/Packet.h>

#include <pcap/dlt.h>
#include <tins/exceptions.h>
#include <tins/ip.h>
#include <tins/ipv6.h>
#include <tins/rawpdu.h>
#include <tins/tcp.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace poker::cmdproc {

namespace {

constexpr std::size_t kEthernetHead = 14, kVlanTag = 4, kCookedHead = 16, kCookedHead2 = 20, kFamilyHead = 4;

std::span<const std::uint8_t> behind(std::span<const std::uint8_t> packet, std::size_t size) {
  return packet.subspan(std::min(size, packet.size()));
}

/// What the link's header is in front of. Whether that is IP tells its own first byte.
std::span<const std::uint8_t> networkPart(int linkType, std::span<const std::uint8_t> packet) {
  switch (linkType) {
    case DLT_EN10MB: {
      std::size_t head = kEthernetHead;
      const auto isVlan = [&] {
        const unsigned type = static_cast<unsigned>(packet[head - 2]) << 8 | packet[head - 1];
        return type == 0x8100 || type == 0x88A8;
      };
      while (head <= packet.size() && isVlan()) head += kVlanTag;
      return behind(packet, head);
    }
    case DLT_LINUX_SLL:
      return behind(packet, kCookedHead);
    case DLT_LINUX_SLL2:
      return behind(packet, kCookedHead2);
    case DLT_NULL:
    case DLT_LOOP:
      return behind(packet, kFamilyHead);
    default:
      return packet;
  }
}

NetworkEnd endOf(const Tins::IPv6Address& address, std::uint16_t port) {
  NetworkEnd end;
  end.isV6 = true;
  std::copy(address.begin(), address.end(), end.address.begin());
  end.port = port;
  return end;
}

NetworkEnd endOf(const Tins::IPv4Address& address, std::uint16_t port) {
  NetworkEnd end;
  const std::uint32_t number = address;  // in the order of the network, whatever the machine's is
  std::copy_n(reinterpret_cast<const std::uint8_t*>(&number), 4, end.address.begin());
  end.port = port;
  return end;
}

template <class Ip>
std::optional<Segment> segmentOf(std::span<const std::uint8_t> packet) {
  Ip ip(packet.data(), static_cast<std::uint32_t>(packet.size()));
  Tins::TCP* tcp = ip.template find_pdu<Tins::TCP>();
  if (tcp == nullptr) return {};
  Segment segment;
  segment.from = endOf(ip.src_addr(), tcp->sport());
  segment.to = endOf(ip.dst_addr(), tcp->dport());
  segment.sequence = tcp->seq();
  segment.syn = tcp->get_flag(Tins::TCP::SYN) != 0;
  segment.ack = tcp->get_flag(Tins::TCP::ACK) != 0;
  segment.fin = tcp->get_flag(Tins::TCP::FIN) != 0;
  segment.rst = tcp->get_flag(Tins::TCP::RST) != 0;
  if (auto* raw = tcp->find_pdu<Tins::RawPDU>()) segment.payload = std::move(raw->payload());
  return segment;
}

}  // namespace

bool isKnownLink(int linkType) {
  constexpr std::array kKnown = {DLT_EN10MB, DLT_LINUX_SLL, DLT_LINUX_SLL2, DLT_NULL,
                                 DLT_LOOP,   DLT_RAW,       DLT_IPV4,       DLT_IPV6};
  return std::find(kKnown.begin(), kKnown.end(), linkType) != kKnown.end();
}

std::optional<Segment> segmentIn(int linkType, std::span<const std::uint8_t> packet) {
  const std::span<const std::uint8_t> network = networkPart(linkType, packet);
  if (network.empty()) return {};
  try {
    if (network[0] >> 4 == 4) return segmentOf<Tins::IP>(network);
    if (network[0] >> 4 == 6) return segmentOf<Tins::IPv6>(network);
  } catch (const Tins::exception_base&) {
    // Damaged, or cut short.
  }
  return {};
}

}  // namespace poker::cmdproc
