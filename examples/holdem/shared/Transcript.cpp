// One line a command:
//
//    time  conn  who               command                   bytes  fields             frame
//   0.013    #1  client ─▶ server  ClKeepAlive                  10  sequenceNumber=1   0A 00 00 00 80 02 01 00 00 00
//
// In a narrow terminal the words beside the arrow are left out, and the frame stands below the fields.

#include <examples/holdem/shared/Transcript.h>

#include <CommandProcessor/commands/session/SrvErrorDisconnected.h>
#include <hostkit/Decode.h>
#include <hostkit/StreamFramer.h>
#include <inspect/CommandFields.h>
#include <inspect/CommandText.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <vector>

#ifndef _WIN32
#include <sys/ioctl.h>
#endif

namespace poker::holdem {

namespace {

constexpr std::size_t kTimeWidth = 8;
constexpr std::size_t kConnectionWidth = 6;
constexpr std::size_t kWideDirection = 18;  // "client ─▶ server" and a gap
constexpr std::size_t kNarrowDirection = 4;
constexpr std::size_t kCommandWidth = 25;  // SrvNewClientVersionAvail and a gap
constexpr std::size_t kSizeWidth = 6;
constexpr std::size_t kGap = 2;
constexpr std::size_t kLeastFields = 26;
constexpr std::size_t kUsualBytes = 10;   // with the dots behind them
constexpr std::size_t kUsualWidth = 140;  // of something that is no terminal

constexpr std::size_t columnsOf(std::size_t bytes) { return bytes * 3 + 1; }
constexpr std::size_t fieldsColumn(std::size_t direction) {
  return kTimeWidth + kConnectionWidth + kGap + direction + kCommandWidth + kSizeWidth + kGap;
}

const fmt::text_style kPlain;
const fmt::text_style kDim = fmt::emphasis::faint;
const fmt::text_style kBold = fmt::emphasis::bold;
const fmt::text_style kTrouble = fmt::fg(fmt::terminal_color::red) | fmt::emphasis::bold;
const fmt::text_style kFromClient = fmt::fg(fmt::terminal_color::green);
const fmt::text_style kFromServer = fmt::fg(fmt::terminal_color::yellow);

/// The same connection always has the same colour, and its neighbours have others.
fmt::text_style styleOf(std::int32_t connection) {
  using fmt::terminal_color;
  constexpr std::array kColours = {terminal_color::cyan,           terminal_color::magenta,
                                   terminal_color::blue,           terminal_color::bright_cyan,
                                   terminal_color::bright_magenta, terminal_color::bright_blue};
  return fmt::fg(kColours[static_cast<std::uint32_t>(connection) % kColours.size()]);
}

std::size_t widthOf([[maybe_unused]] std::FILE* out) {
#ifndef _WIN32
  winsize size{};
  if (ioctl(fileno(out), TIOCGWINSZ, &size) == 0 && size.ws_col != 0) return size.ws_col;
#endif
  const char* columns = std::getenv("COLUMNS");
  const std::size_t width = columns != nullptr ? std::strtoul(columns, nullptr, 10) : 0;
  return width != 0 ? width : kUsualWidth;
}

/// Breaks a text into lines of that many characters at most: at a blank where there is one, anywhere otherwise.
std::vector<std::string> wrapped(std::string_view text, std::size_t width) {
  std::vector<std::string> lines;
  while (text.size() > width) {
    const std::size_t blank = text.rfind(' ', width);
    const bool atBlank = blank != std::string_view::npos && blank != 0;
    lines.emplace_back(text.substr(0, atBlank ? blank : width));
    text.remove_prefix(atBlank ? blank + 1 : width);
  }
  lines.emplace_back(text);
  return lines;
}

/// Looks for fields that must not be shown.
class SecretFinder final : public FieldVisitor {
 public:
  bool found = false;

  void number(const Field& field, std::int64_t&) override { look(field); }
  void real(const Field& field, double&) override { look(field); }
  void text(const Field& field, std::string&) override { look(field); }
  void bytes(const Field& field, std::vector<std::uint8_t>&) override { look(field); }
  void beginRecord(const Field& field) override { look(field); }
  void endRecord(const Field&) override {}
  // One element shows what the elements are like, also when there is none.
  std::size_t beginList(const Field& field, std::size_t) override { return look(field), 1; }
  void endList(const Field&) override {}
  std::size_t beginMap(const Field& field, std::size_t) override { return look(field), 1; }
  void endMap(const Field&) override {}

 private:
  void look(const Field& field) { found = found || field.secret; }
};

/// Whether the class has secrets: its bytes are not for transcripts then, not even when they are damaged.
bool hasSecrets(std::string_view className) {
  static std::map<std::string_view, bool> known;
  const CommandFields* fields = CommandFields::of(className);
  if (fields == nullptr) return false;
  const auto [place, isNew] = known.try_emplace(fields->description->name, false);
  if (isNew) {
    const CommandHandle<> empty(fields->create());
    SecretFinder finder;
    fields->visit(*empty, finder);
    place->second = finder.found;
  }
  return place->second;
}

}  // namespace

Transcript::Transcript(std::FILE* out, bool colour) : out_(out), colour_(colour) {
  const std::size_t width = widthOf(out);
  narrow_ = width < fieldsColumn(kWideDirection) + kLeastFields + kGap + columnsOf(kUsualBytes - 2);
  fieldsColumn_ = fieldsColumn(narrow_ ? kNarrowDirection : kWideDirection);
  const std::size_t rest = std::max(width, fieldsColumn_ + kLeastFields) - fieldsColumn_;
  if (narrow_) {
    fieldsWidth_ = rest;
    mostBytes_ = rest / 3;
  } else {
    fieldsWidth_ = std::clamp(rest - std::min(rest, kGap + columnsOf(kUsualBytes)), kLeastFields, std::size_t{60});
    mostBytes_ = std::min<std::size_t>((rest - fieldsWidth_ - kGap) / 3, 32);
  }
  write(paint(kBold,
              fmt::format("{:>{}}{:>{}}  {:<{}}{:<{}}{:>{}}  {:<{}}  {}", "time", kTimeWidth, "conn", kConnectionWidth,
                          narrow_ ? "" : "who", narrow_ ? kNarrowDirection : kWideDirection, "command", kCommandWidth,
                          "bytes", kSizeWidth, "fields", narrow_ ? 0 : fieldsWidth_, narrow_ ? "" : "frame")));
}

void Transcript::frame(std::int32_t connection, CommandDirection direction, std::span<const std::uint8_t> bytes) {
  const bool toServer = direction == CommandDirection::ClientToServer;
  DecodePolicy policy = DecodePolicy::of(toServer ? Side::Server : Side::Client);
  policy.wipeSecrets = true;
  const DecodeResult decoded = decodeCommand(bytes.subspan(std::min<std::size_t>(kLengthSlot, bytes.size())), policy);
  std::string name, fields;
  if (decoded) {
    name = CommandFactory::find(*decoded.command)->name();
    fields = fieldsAsText(*decoded.command);
    if (const auto* reason = dynamic_cast<const SrvErrorDisconnected*>(decoded.command.get())) {
      fields.append(" (").append(reason->errCodeToString()) += ')';
    }
  } else if (!decoded.error.className.empty()) {
    name = decoded.error.className;
    fields = decoded.error.message;
  } else {
    name = "(no command)";
    fields = fmt::format("({}, {}) {}", decoded.error.family, decoded.error.code, decoded.error.message);
  }

  const fmt::text_style& style = toServer ? kFromClient : kFromServer;
  const fmt::text_style& fieldsStyle = decoded ? kPlain : kTrouble;
  const std::string_view arrow = toServer ? "─▶" : "◀─";
  const std::vector<std::string> lines = wrapped(fields, fieldsWidth_);
  const std::string hex = hexBytes(bytes, hasSecrets(name));
  const std::string indent(fieldsColumn_, ' ');
  std::string text = lead(connection);
  text += paint(style, narrow_ ? fmt::format("{}  ", arrow) : fmt::format("client {} server  ", arrow));
  text += paint(decoded ? style | kBold : kTrouble, fmt::format("{:<{}}", name, kCommandWidth));
  text += paint(kDim, fmt::format("{:>{}}", bytes.size(), kSizeWidth)) + "  ";
  if (narrow_ && fields.empty()) {
    write(text + hex);
    return;
  }
  text += paint(fieldsStyle, fmt::format("{:<{}}", lines.front(), fieldsWidth_));
  write(narrow_ ? text : text + "  " + hex);
  for (std::size_t i = 1; i < lines.size(); ++i) write(indent + paint(fieldsStyle, lines[i]));
  if (narrow_) write(indent + hex);
}

void Transcript::remark(std::int32_t connection, std::string_view text) {
  write(lead(connection) + paint(kDim, fmt::format("· {}", text)));
}

void Transcript::trouble(std::int32_t connection, std::string_view text) {
  write(lead(connection) + paint(kTrouble, fmt::format("✗ {}", text)));
}

void Transcript::heading(std::string_view text) {
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start_;
  write(paint(kBold, fmt::format("{:>{}.3f}{:>{}}  ━━ {} ━━", passed.count(), kTimeWidth, "", kConnectionWidth, text)));
}

std::string Transcript::lead(std::int32_t connection) const {
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start_;
  return paint(kDim, fmt::format("{:>{}.3f}", passed.count(), kTimeWidth)) +
         paint(styleOf(connection), fmt::format("{:>{}}", fmt::format("#{}", connection), kConnectionWidth)) + "  ";
}

/// Length slot, then type code and family, then the fields.
std::string Transcript::hexBytes(std::span<const std::uint8_t> bytes, bool hideFields) const {
  const std::size_t slot = std::min<std::size_t>(kLengthSlot, bytes.size());
  const std::size_t head = std::min<std::size_t>(kShortestFrame, bytes.size());
  std::string text = paint(kDim, bytesAsText(bytes.first(slot)));
  if (head > slot) text += ' ' + paint(kBold, bytesAsText(bytes.subspan(slot, head - slot)));
  if (bytes.size() == head) return text;
  if (hideFields) return text + " ***";
  const std::size_t shown = std::min(bytes.size(), std::max(mostBytes_, head));
  if (shown > head) text += ' ' + paint(kDim, bytesAsText(bytes.subspan(head, shown - head)));
  if (shown < bytes.size()) text += paint(kDim, " …");
  return text;
}

std::string Transcript::paint(const fmt::text_style& style, std::string_view text) const {
  return colour_ ? fmt::format(style, "{}", text) : std::string(text);
}

void Transcript::write(const std::string& line) const {
  const std::size_t end = line.find_last_not_of(' ') + 1;
  std::fwrite(line.data(), 1, end, out_);
  std::fputc('\n', out_);
  std::fflush(out_);
}

}  // namespace poker::holdem
