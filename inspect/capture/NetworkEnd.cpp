#include <inspect/capture/NetworkEnd.h>

#include <cstddef>

namespace poker {

namespace {

void appendHex(std::string& text, unsigned value) {
  bool begun = false;
  for (int shift = 12; shift >= 0; shift -= 4) {
    const unsigned digit = value >> shift & 0xF;
    begun = begun || digit != 0 || shift == 0;
    if (begun) text += "0123456789abcdef"[digit];
  }
}

/// In the usual short form: the first of the longest runs of zeros is left out.
std::string textOfV6(const std::array<std::uint8_t, 16>& address) {
  std::array<unsigned, 8> groups{};
  for (std::size_t i = 0; i < groups.size(); ++i) groups[i] = unsigned{address[2 * i]} << 8 | address[2 * i + 1];
  std::size_t gap = groups.size(), gapSize = 1;  // a single zero is written
  for (std::size_t i = 0; i < groups.size(); ++i) {
    std::size_t size = 0;
    while (i + size < groups.size() && groups[i + size] == 0) ++size;
    if (size > gapSize) {
      gap = i;
      gapSize = size;
    }
  }
  std::string text;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    if (i == gap) {
      text += "::";
      i += gapSize - 1;
      continue;
    }
    if (!text.empty() && text.back() != ':') text += ':';
    appendHex(text, groups[i]);
  }
  return text;
}

}  // namespace

std::string toText(const NetworkEnd& end) {
  std::string text;
  if (end.isV6) {
    text.append("[").append(textOfV6(end.address)).append("]");
  } else {
    for (std::size_t i = 0; i < 4; ++i) text.append(i == 0 ? "" : ".").append(std::to_string(end.address[i]));
  }
  return text.append(":").append(std::to_string(end.port));
}

}  // namespace poker
