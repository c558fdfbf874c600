#include <examples/holdem/client/terminal/Text.h>

#include <inspect/CommandText.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>

#include <sys/ioctl.h>

namespace poker::holdem {

std::string escaped(std::string_view text) {
  const std::string inQuotes = quoted(text);
  return inQuotes.substr(1, inQuotes.size() - 2);
}

std::string escapedLines(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    const bool isPrintable = (c >= 0x20 && c <= 0x7E) || c == '\n';
    if (isPrintable) {
      safe += c;
    } else if (c != '\r') {
      safe += fmt::format("\\x{:02X}", static_cast<unsigned char>(c));
    }
  }
  return safe;
}

std::string shortened(std::string text, std::size_t columns) {
  if (text.size() <= columns) return text;
  std::size_t end = 0;
  while (true) {
    const bool isEscape = text[end] == '\\' && end + 1 < text.size();
    const std::size_t next = end + (!isEscape ? 1 : text[end + 1] == 'x' ? 4 : 2);
    if (next + 2 > columns) break;
    end = next;
  }
  text.resize(end);
  return text += "..";
}

std::string counted(std::uint64_t number, std::string_view what) {
  return fmt::format("{} {}{}", number, what, number == 1 ? "" : "s");
}

void addForeign(std::vector<std::string>& lines, std::string_view about, std::string_view text) {
  const std::string safe = escapedLines(text);
  std::string_view rest = safe;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    lines.push_back(fmt::format("  {:<13}{}", about, rest.substr(0, end)));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    about = "";
  }
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  bool inColour = false;
  for (const char c : text) {
    if (c == '\x1B') inColour = true;
    const bool continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    if (!inColour && !continues) ++columns;
    if (c == 'm') inColour = false;
  }
  return columns;
}

std::size_t widthOf(std::FILE* stream) {
  winsize size{};
  if (ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col != 0) return size.ws_col;
  return SIZE_MAX;
}

}  // namespace poker::holdem
