#include <inspect/capture/PcapngWriter.h>
#include <inspect/schema/Schema.h>
#include <tests/cmdproc/Ran.h>
#include <tests/inspect/RandomFrame.h>
#include <tools/cmdproc/input/Input.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pcap/pcap.h>
#include <sys/stat.h>
#include <tins/ip.h>
#include <tins/ipv6.h>
#include <tins/rawpdu.h>
#include <tins/tcp.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace poker::cmdproc {
namespace {

using test::Bytes;
using test::hex;
using test::joined;
using test::TempFolder;
using test::writeFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

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
};

Bytes ipPacket(const Piece& piece) {
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

Bytes linkPacket(int link, const Piece& piece) {
  const std::string type = piece.from.isV6() ? "86 DD" : "08 00";
  std::map<int, std::string> heads = {
      {DLT_EN10MB, "02 00 00 00 00 01 02 00 00 00 00 02 81 00 00 05" + type},  // with a VLAN's tag
      {DLT_LINUX_SLL, "00 00 00 01 00 06 02 00 00 00 00 01 00 00" + type},
      {DLT_LINUX_SLL2, type + "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
      {DLT_NULL, piece.from.isV6() ? "0A 00 00 00" : "02 00 00 00"}};
  Bytes packet = joined(std::vector{hex(heads[link]), ipPacket(piece)});
  if (link == DLT_EN10MB && packet.size() < 70) packet.resize(70);  // short packets are filled up
  return packet;
}

constexpr std::int64_t kStart = 1'790'000'000'000'000'000;

/// Writes a capture as libpcap does; a packet each microsecond.
void writeCapture(const std::string& path, int link, const std::vector<Piece>& pieces) {
  pcap_t* dead = pcap_open_dead(link, 262144);
  pcap_dumper_t* out = pcap_dump_open(dead, path.c_str());
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const Bytes bytes = linkPacket(link, pieces[i]);
    pcap_pkthdr head{};
    head.ts.tv_sec = kStart / 1'000'000'000 + static_cast<long>(i / 1'000'000);
    head.ts.tv_usec = static_cast<long>(i % 1'000'000);
    head.caplen = head.len = static_cast<bpf_u_int32>(bytes.size());
    pcap_dump(reinterpret_cast<u_char*>(out), &head, bytes.data());
  }
  pcap_dump_close(out);
  pcap_close(dead);
}

Bytes randomFrame(std::mt19937_64& random, CommandDirection direction) {
  const auto all = CommandSchema::all();
  for (;;) {
    const CommandSchema& schema = all[random() % all.size()];
    if (schema.description->direction == direction) return test::randomFrame(schema, random());
  }
}

using Direction = std::pair<std::string, CommandDirection>;  // of a connection
struct Read {
  std::map<Direction, std::vector<Bytes>> frames;
  std::vector<std::string> problems;
  std::string notes;
};

Read readAll(const std::string& path) {
  Read read;
  testing::internal::CaptureStderr();
  const auto source = openInput({.path = path});
  std::map<Direction, std::uint64_t> offsets;
  std::int64_t last = 0;
  std::uint64_t number = 0;
  CapturedFrame frame;
  while (source->next(frame)) {
    EXPECT_EQ(frame.number, ++number);
    EXPECT_GE(frame.time.value_or(last), last);
    last = frame.time.value_or(last);
    if (!frame.problem.empty()) {
      read.problems.emplace_back(frame.problem);
      continue;
    }
    const Direction direction(frame.connection, frame.direction.value());
    read.frames[direction].emplace_back(frame.bytes.begin(), frame.bytes.end());
    std::uint64_t& offset = offsets[direction];
    if (frame.offset != 0) {
      EXPECT_GE(frame.offset, offset);
    }  // ports may be used again
    offset = frame.offset + frame.bytes.size();
  }
  EXPECT_FALSE(source->next(frame));
  EXPECT_EQ(source->position(), source->size());
  read.notes = testing::internal::GetCapturedStderr();
  return read;
}

using Tins::TCP;
constexpr auto kUp = CommandDirection::ClientToServer;
constexpr auto kDown = CommandDirection::ServerToClient;
const Side kServer{"10.0.0.1", 4000};

void open(std::vector<Piece>& pieces, const Side& client, const Side& server, std::uint32_t up, std::uint32_t down) {
  pieces.push_back({client, server, up - 1, TCP::SYN, {}});
  pieces.push_back({server, client, down - 1, TCP::SYN | TCP::ACK, {}});
  pieces.push_back({client, server, up, TCP::ACK, {}});
}

/// Segments of any length, among them some again, cut otherwise.
void addStream(std::vector<Piece>& pieces, std::mt19937_64& random, const Side& from, const Side& to,
               std::uint32_t sequence, const Bytes& stream) {
  for (std::size_t at = 0; at < stream.size();) {
    const std::size_t begin = at - std::min<std::size_t>(at, random() % 5 == 0 ? random() % 100 : 0);
    const std::size_t end = std::min(stream.size(), at + 1 + random() % 300);
    pieces.push_back(
        {from,
         to,
         sequence + static_cast<std::uint32_t>(begin),
         TCP::ACK,
         {stream.begin() + static_cast<std::ptrdiff_t>(begin), stream.begin() + static_cast<std::ptrdiff_t>(end)}});
    if (random() % 8 == 0) pieces.push_back(pieces.back());
    at = end;
  }
  pieces.push_back({from, to, sequence + static_cast<std::uint32_t>(stream.size()), TCP::FIN | TCP::ACK, {}});
}

TEST(TcpInput, PutsConnectionsTogetherOnEveryKindOfLink) {
  const TempFolder folder;
  std::mt19937_64 random(2);
  for (const int link : {DLT_EN10MB, DLT_LINUX_SLL, DLT_LINUX_SLL2, DLT_NULL, DLT_RAW}) {
    std::vector<Piece> opening, pieces;
    std::map<Direction, std::vector<Bytes>> frames;
    // The second one is never seen to open, and the server's port is the lower one there.
    const std::pair<Side, Side> connections[] = {{{"10.0.0.2", 3000}, kServer},
                                                 {{"2001:db8::5", 50000}, {"2001:db8::1", 4000}}};
    for (const auto& [client, server] : connections) {
      auto& up = frames[{client.text(), kUp}];
      auto& down = frames[{client.text(), kDown}];
      while (up.size() < 500) up.push_back(randomFrame(random, kUp));
      while (down.size() < 500) down.push_back(randomFrame(random, kDown));
      const bool isSeen = &client == &connections[0].first;
      // They pass the end of the numbers.
      const std::uint32_t upFrom = 0xFFFFF000, downFrom = 0xFFFFFF00;
      if (isSeen) open(opening, client, server, upFrom, downFrom);
      for (const auto& [from, to, sent, sequence] :
           {std::tuple(client, server, &up, upFrom), std::tuple(server, client, &down, downFrom)}) {
        const auto size = static_cast<std::uint32_t>(sent->front().size());
        if (!isSeen) opening.push_back({from, to, sequence - size, TCP::ACK, sent->front()});
      }
      addStream(pieces, random, client, server, upFrom, joined(std::span(up).subspan(!isSeen)));
      addStream(pieces, random, server, client, downFrom, joined(std::span(down).subspan(!isSeen)));
    }
    // Anything comes up to some places earlier or later, and all are mixed.
    std::vector<std::pair<std::uint64_t, std::size_t>> order;
    std::map<std::string, std::uint64_t> at;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      order.emplace_back(10 * ++at[pieces[i].from.text() + pieces[i].to.text()] + random() % 120, i);
    }
    std::sort(order.begin(), order.end());
    std::vector<Piece> mixed = opening;
    for (const auto& [place, index] : order) mixed.push_back(pieces[index]);

    writeCapture(folder.file("capture"), link, mixed);
    const Read read = readAll(folder.file("capture"));
    EXPECT_THAT(read.problems, IsEmpty()) << link;
    EXPECT_EQ(read.notes, "") << link;
    ASSERT_EQ(read.frames.size(), frames.size()) << link;
    for (const auto& [direction, expected] : frames) ASSERT_EQ(read.frames.at(direction), expected) << direction.first;
  }
}

TEST(TcpInput, SaysWhatItCannotFollow) {
  const TempFolder folder;
  const Bytes keepAlive = hex("0A 00 00 00 80 02 05 00 00 00");
  const Side client{"10.0.0.2", 50000}, web{"10.0.0.3", 80};
  const Direction up(client.text(), kUp);
  std::vector<Piece> pieces;
  const auto say = [&](std::uint32_t sequence, Bytes bytes, int flags = TCP::ACK) {
    pieces.push_back({client, kServer, sequence, flags, std::move(bytes)});
  };
  const auto read = [&] {
    writeCapture(folder.file("capture"), DLT_RAW, pieces);
    pieces.clear();
    return readAll(folder.file("capture"));
  };
  const auto text = [](std::string_view characters) { return Bytes(characters.begin(), characters.end()); };

  // Other protocols, from their begin or not.
  open(pieces, client, web, 1, 1);
  pieces.push_back({client, web, 1, TCP::ACK, text("GET / HTTP/1.1\r\n\r\n")});
  open(pieces, client, kServer, 1, 1);
  say(1, keepAlive);
  pieces.push_back({web, client, 1, TCP::ACK, text("HTTP/1.1 200 OK\r\n\r\n")});
  Read result = read();
  EXPECT_THAT(result.frames, ElementsAre(Pair(up, ElementsAre(keepAlive))));
  EXPECT_EQ(result.notes, "cmdproc: 10.0.0.2:50000 - 10.0.0.3:80: no commands, passed over\n");
  EXPECT_THAT(result.problems, IsEmpty());

  // From the middle of a command on.
  say(77, {keepAlive.begin() + 4, keepAlive.end()});
  say(83, keepAlive);
  result = read();
  EXPECT_THAT(result.frames, ElementsAre(Pair(up, ElementsAre(keepAlive))));
  EXPECT_EQ(result.notes,
            "cmdproc: 10.0.0.1:4000 - 10.0.0.2:50000: 6 bytes from 10.0.0.2:50000 are passed over, in "
            "which no command begins\n");

  // A hole, with half a command behind it; then the ports are used again; then it ends within a command.
  open(pieces, client, kServer, 1, 1);
  say(1, keepAlive);
  say(31, {keepAlive.begin() + 8, keepAlive.end()});
  say(33, keepAlive);
  open(pieces, client, kServer, 5001, 1);
  say(5001, keepAlive);
  say(5011, {keepAlive.begin(), keepAlive.begin() + 7}, TCP::ACK | TCP::RST);
  say(5011, keepAlive);  // nobody listens any more
  result = read();
  EXPECT_THAT(result.frames.at(up), ElementsAre(keepAlive, keepAlive, keepAlive));
  EXPECT_THAT(result.problems,
              ElementsAre("20 bytes of the stream are missing", "the stream ends within a frame, after 7 bytes of it"));

  // A length that cannot be; what waits too long for missing bytes.
  open(pieces, client, kServer, 1, 1);
  say(1, keepAlive);
  say(11, hex("05 00 00 00 80 02"));
  say(17, keepAlive);
  const Side second{"10.0.0.2", 50001};
  open(pieces, second, kServer, 1, 1);
  for (std::uint32_t i = 1; i <= 9000; ++i) pieces.push_back({second, kServer, 1 + i * 10, TCP::ACK, keepAlive});
  result = read();
  EXPECT_THAT(result.frames.at(up), ElementsAre(keepAlive));
  EXPECT_EQ(result.frames.at(Direction(second.text(), kUp)).size(), 9000u);
  EXPECT_EQ(result.problems.size(), 2u);
  EXPECT_THAT(result.problems, testing::Contains("10 bytes of the stream are missing"));

  // A file that is cut.
  open(pieces, client, kServer, 1, 1);
  say(1, keepAlive);
  say(11, keepAlive);
  read();
  std::filesystem::resize_file(folder.file("capture"), std::filesystem::file_size(folder.file("capture")) - 5);
  result = readAll(folder.file("capture"));
  EXPECT_THAT(result.frames, ElementsAre(Pair(up, ElementsAre(keepAlive))));
  EXPECT_THAT(result.problems, ElementsAre(HasSubstr("truncated")));
  writeCapture(folder.file("capture"), DLT_IEEE802_11, {});
  EXPECT_THROW(openInput({.path = folder.file("capture")}), std::runtime_error);
}

std::string_view asText(std::span<const std::uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(Input, IsRecognisedByItsFirstBytes) {
  const TempFolder folder;
  const Bytes keepAlive = hex("0A 00 00 00 80 02 05 00 00 00");
  const auto count = [&](const std::string& path) {
    const auto source = openInput({.path = path});
    CapturedFrame frame;
    std::size_t frames = 0;
    while (source->next(frame)) {
      EXPECT_EQ(Bytes(frame.bytes.begin(), frame.bytes.end()), keepAlive) << frame.problem;
      ++frames;
    }
    return frames;
  };
  const auto isCapture = [](const std::string& path) {
    try {
      openCapture({.path = path});
      return true;
    } catch (const UsageError&) {
      return false;
    }
  };
  writeFile(folder.file("short"), asText(hex("0A 0D")));
  EXPECT_FALSE(isCapture(folder.file("short")));
  writeFile(folder.file("stream"), asText(keepAlive));
  PcapngWriter ours("test");
  ours.write({.bytes = keepAlive, .table = "T"}, {});
  writeFile(folder.file("ours"), asText(ours.blocks()));
  std::vector<Piece> pieces;
  const Side client{"10.0.0.2", 50000};
  open(pieces, client, kServer, 1, 1);
  for (std::uint32_t i = 0; i < 1000; ++i) pieces.push_back({client, kServer, 1 + i * 10, TCP::ACK, keepAlive});
  writeCapture(folder.file("pcap"), DLT_RAW, pieces);

  // The same as pcapng, by hand.
  Bytes pcapng =
      hex("0A 0D 0D 0A 1C 00 00 00 4D 3C 2B 1A 01 00 00 00 FF FF FF FF FF FF FF FF 1C 00 00 00"
          "01 00 00 00 14 00 00 00 65 00 00 00 00 00 04 00 14 00 00 00");
  for (const Piece& piece : pieces) {
    const Bytes packet = ipPacket(piece);
    const auto number = [&](std::size_t value) {
      for (std::size_t i = 0; i < 4; ++i) pcapng.push_back(static_cast<std::uint8_t>(value >> 8 * i));
    };
    const std::size_t padded = (packet.size() + 3) / 4 * 4;
    for (const std::size_t value :
         {std::size_t{6}, padded + 32, std::size_t{0}, std::size_t{0}, std::size_t{0}, packet.size(), packet.size()}) {
      number(value);
    }
    pcapng.insert(pcapng.end(), packet.begin(), packet.end());
    pcapng.resize(pcapng.size() + padded - packet.size());
    number(padded + 32);
  }
  writeFile(folder.file("pcapng"), asText(pcapng));

  for (const auto& [name, frames] :
       {std::pair<std::string, std::size_t>("stream", 1), {"ours", 1}, {"pcap", 1000}, {"pcapng", 1000}}) {
    EXPECT_EQ(count(folder.file(name)), frames) << name;
    EXPECT_EQ(isCapture(folder.file(name)), name != "stream") << name;
    // What can be read only once.
    const std::string pipe = folder.file("pipe-" + name);
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&pipe, from = folder.file(name)] { writeFile(pipe, test::readFile(from)); });
    EXPECT_EQ(count(pipe), frames) << name;
    writer.join();
  }
}

}  // namespace
}  // namespace poker::cmdproc
