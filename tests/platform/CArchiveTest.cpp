#include <CommandProcessor/platform/CArchive.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <vector>

namespace poker {
namespace {

using Bytes = std::vector<std::uint8_t>;

const struct {
  std::uint64_t count;
  Bytes bytes;
} kCounts[] = {
    {0, {0x00, 0x00}},
    {0x1234, {0x34, 0x12}},
    {0xFFFE, {0xFE, 0xFF}},
    {0xFFFF, {0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00}},
    {0xFFFFFFFE, {0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF}},
    {0xFFFFFFFF, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00}},
    {0x0102030405060708, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x08, 0x07, 0x06, 0x05, 0x04, 0x03, 0x02, 0x01}},
};

TEST(CArchive, WritesAndReadsCountsAtTheEdgesOfTheirWidths) {
  for (const auto& c : kCounts) {
    Bytes bytes;
    CArchive(bytes, CArchive::store).WriteCount(c.count);
    EXPECT_EQ(bytes, c.bytes) << c.count;
    CArchive archive(c.bytes);
    EXPECT_EQ(archive.ReadCount(), c.count);
    EXPECT_EQ(archive.remaining(), 0u);
  }
}

TEST(CArchive, MovesNothingWhenACountIsCutShort) {
  for (const auto& c : kCounts) {
    for (std::size_t size = 0; size < c.bytes.size(); ++size) {
      CArchive archive(std::span(c.bytes).first(size));
      EXPECT_THROW(archive.ReadCount(), CArchiveException) << c.count << " from " << size << " bytes";
      EXPECT_EQ(archive.remaining(), size);
    }
  }
}

TEST(CArchive, ReadsWholeBlocksOrNothing) {
  Bytes bytes;
  CArchive out(bytes, CArchive::store);
  out.Write("abc", 3);
  out.Write(nullptr, 0);
  CArchive in(bytes, CArchive::load);
  char text[4] = "???";
  EXPECT_THROW(in.Read(text, 4), CArchiveException);
  EXPECT_THROW(in.Read(text, SIZE_MAX), CArchiveException);
  EXPECT_STREQ(text, "???");
  EXPECT_EQ(in.Read(text, 3), 3u);
  EXPECT_STREQ(text, "abc");
  EXPECT_EQ(in.Read(nullptr, 0), 0u);
}

TEST(CArchive, RefusesTheOtherDirection) {
  Bytes bytes(8);
  CArchive in(bytes, CArchive::load);
  EXPECT_THROW(in.WriteCount(1), CArchiveException);
  EXPECT_THROW(CArchive(bytes, CArchive::store).ReadCount(), CArchiveException);
  EXPECT_EQ(bytes.size(), 8u);
  EXPECT_EQ(in.remaining(), 8u);
}

}  // namespace
}  // namespace poker
