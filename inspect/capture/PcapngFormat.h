#pragma once

#include <cstdint>
#include <string_view>

/// Numbers of the pcapng format and of the header in front of an exported packet, as our captures use them.
namespace poker::pcapng {

inline constexpr std::uint32_t kSectionHeader = 0x0A0D0D0A;
inline constexpr std::uint32_t kInterface = 1;
inline constexpr std::uint32_t kEnhancedPacket = 6;
inline constexpr std::uint32_t kByteOrderMagic = 0x1A2B3C4D;

inline constexpr std::uint16_t kEndOfOptions = 0;
inline constexpr std::uint16_t kComment = 1;
inline constexpr std::uint16_t kHardware = 2, kSystem = 3, kApplication = 4;      // of a section header
inline constexpr std::uint16_t kName = 2, kTimeResolution = 9, kTimeOffset = 14;  // of an interface
inline constexpr std::uint16_t kFlags = 2;                                        // of a packet
inline constexpr std::uint32_t kDirectionBits = 3, kInbound = 1, kOutbound = 2;

/// Packets that another program has taken apart: a header of tags, then what the named dissector reads.
inline constexpr std::uint16_t kExportedPackets = 252;
inline constexpr std::uint16_t kEndOfTags = 0;
inline constexpr std::uint16_t kDissectorName = 12;
inline constexpr std::uint16_t kSourceV4 = 20, kDestinationV4 = 21, kSourceV6 = 22, kDestinationV6 = 23;
inline constexpr std::uint16_t kPortType = 24, kSourcePort = 25, kDestinationPort = 26;
inline constexpr std::uint32_t kPortOfTcp = 2;

inline constexpr std::string_view kDissector = "cmdproc";
inline constexpr std::string_view kHandComment = "hand ";

}  // namespace poker::pcapng
