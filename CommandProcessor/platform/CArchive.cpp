#include <CommandProcessor/platform/CArchive.h>

#include <array>
#include <cstring>
#include <limits>

namespace poker {
namespace {

constexpr std::uint64_t kEscape16 = std::numeric_limits<std::uint16_t>::max();
constexpr std::uint64_t kEscape32 = std::numeric_limits<std::uint32_t>::max();

const char* textOf(CArchiveException::Cause cause) {
  switch (cause) {
    case CArchiveException::Cause::endOfFile:
      return "CArchive: the bytes end before the value does";
    case CArchiveException::Cause::readOnly:
      return "CArchive: write to an archive that loads";
    case CArchiveException::Cause::writeOnly:
      return "CArchive: read from an archive that stores";
  }
  return "CArchive";
}

}  // namespace

CArchiveException::CArchiveException(Cause cause) : std::runtime_error(textOf(cause)), cause_(cause) {}
CArchiveException::~CArchiveException() = default;

CArchive::CArchive(std::vector<std::uint8_t>& bytes, Mode mode) noexcept {
  if (mode == load) {
    input_ = bytes;
  } else {
    output_ = &bytes;
  }
}

std::size_t CArchive::Read(void* destination, std::size_t size) {
  if (IsStoring()) throw CArchiveException(CArchiveException::Cause::writeOnly);
  if (size > input_.size()) throw CArchiveException(CArchiveException::Cause::endOfFile);
  if (size != 0) std::memcpy(destination, input_.data(), size);
  input_ = input_.subspan(size);
  return size;
}

void CArchive::Write(const void* source, std::size_t size) {
  if (IsLoading()) throw CArchiveException(CArchiveException::Cause::readOnly);
  const auto* const first = static_cast<const std::uint8_t*>(source);
  if (size != 0) output_->insert(output_->end(), first, first + size);
}

std::uint64_t CArchive::ReadCount() {
  const auto start = input_;
  const auto number = [this](std::size_t width) {
    std::array<std::uint8_t, 8> bytes{};
    Read(bytes.data(), width);
    std::uint64_t value = 0;
    for (std::size_t i = width; i-- > 0;) value = value << 8 | bytes[i];
    return value;
  };
  try {
    const std::uint64_t narrow = number(2);
    if (narrow != kEscape16) return narrow;
    const std::uint64_t wide = number(4);
    return wide != kEscape32 ? wide : number(8);
  } catch (const CArchiveException&) {
    input_ = start;
    throw;
  }
}

void CArchive::WriteCount(std::uint64_t count) {
  std::array<std::uint8_t, 14> bytes{};
  std::size_t size = 0;
  const auto number = [&](std::uint64_t value, unsigned width) {
    for (unsigned i = 0; i < width; ++i) bytes[size++] = static_cast<std::uint8_t>(value >> (8 * i));
  };
  if (count < kEscape16) {
    number(count, 2);
  } else {
    number(kEscape16, 2);
    if (count < kEscape32) {
      number(count, 4);
    } else {
      number(kEscape32, 4);
      number(count, 8);
    }
  }
  Write(bytes.data(), size);
}

}  // namespace poker
