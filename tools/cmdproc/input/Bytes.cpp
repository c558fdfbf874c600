#include <tools/cmdproc/input/Bytes.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace poker::cmdproc {

namespace {

[[noreturn]] void fail(const std::string& what, int error) {
  throw std::runtime_error(what + ": " + std::generic_category().message(error));
}

std::optional<std::uint8_t> digitValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<std::uint8_t>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<std::uint8_t>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<std::uint8_t>(c - 'A' + 10);
  return std::nullopt;
}

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v'; }

}  // namespace

FileBytes::FileBytes(const std::string& path) : name_(path == "-" ? "standard input" : path), file_(stdin) {
  if (path != "-") {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) throw std::runtime_error(path + ": is a directory");
    owned_.reset(std::fopen(path.c_str(), "rb"));
    if (owned_ == nullptr) fail(path, errno);
    file_ = owned_.get();
    if (std::filesystem::is_regular_file(path, error)) size_ = std::filesystem::file_size(path, error);
  }
#ifdef _WIN32
  if (owned_ == nullptr) _setmode(_fileno(stdin), _O_BINARY);
#endif
}

std::size_t FileBytes::readFile(std::span<std::uint8_t> space) {
  const std::size_t size = std::fread(space.data(), 1, space.size(), file_);
  if (size < space.size() && std::ferror(file_) != 0) fail(name_, errno);
  return size;
}

std::size_t FileBytes::read(std::span<std::uint8_t> space) {
  std::size_t size = 0;
  if (peekedTaken_ < peeked_.size()) {
    size = std::min(space.size(), peeked_.size() - peekedTaken_);
    std::memcpy(space.data(), peeked_.data() + peekedTaken_, size);
    peekedTaken_ += size;
  } else {
    size = readFile(space);
  }
  position_ += size;
  return size;
}

std::span<const std::uint8_t> FileBytes::peek(std::size_t size) {
  const std::size_t known = peeked_.size() - peekedTaken_;
  if (known < size) {
    peeked_.resize(peekedTaken_ + size);
    const std::size_t received = readFile(std::span(peeked_).last(size - known));
    peeked_.resize(peekedTaken_ + known + received);
  }
  const std::span<const std::uint8_t> bytes = std::span(peeked_).subspan(peekedTaken_);
  return bytes.first(std::min(size, bytes.size()));
}

std::size_t HexBytes::read(std::span<std::uint8_t> space) {
  std::size_t written = 0;
  std::uint8_t text[16384];
  while (written == 0 && problem_.empty()) {
    const std::size_t size = text_->read(std::span(text).first(std::min(sizeof text, space.size())));
    if (size == 0) {
      if (half_) problem_ = "the hexadecimal text ends in the middle of a byte";
      return 0;
    }
    for (std::size_t i = 0; i < size && problem_.empty(); ++i) take(static_cast<char>(text[i]), space, written);
  }
  return written;
}

void HexBytes::take(char c, std::span<std::uint8_t> space, std::size_t& written) {
  if (c == '\n') {
    ++line_;
    inComment_ = false;
  } else if (inComment_) {
    return;
  } else if (c == '#') {
    inComment_ = true;
    return;
  }
  if (isBlank(c)) return;
  const std::optional<std::uint8_t> digit = digitValue(c);
  if (!digit) {
    const bool printable = c > 0x20 && c < 0x7F;
    problem_ = "line " + std::to_string(line_) + ": " + (printable ? std::string{'\'', c, '\''} : "a byte") +
               " that is no hexadecimal digit";
  } else if (half_) {
    space[written++] = static_cast<std::uint8_t>(*half_ << 4 | *digit);
    half_.reset();
  } else {
    half_ = digit;
  }
}

}  // namespace poker::cmdproc
