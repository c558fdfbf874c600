#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace poker::cmdproc {

/// Bytes of a file, of standard input, of a text that tells them; one after the other.
class ByteSource {
 public:
  virtual ~ByteSource() = default;

  /// @return how many bytes were written to the front of `space`: none at the end
  /// @throws std::runtime_error  the input cannot be read
  virtual std::size_t read(std::span<std::uint8_t> space) = 0;
  /// Why there are no more bytes, when that is not simply the end.
  virtual std::string_view problem() const { return {}; }

  /// Bytes of input consumed, and how many there are where that is known.
  virtual std::uint64_t position() const = 0;
  virtual std::optional<std::uint64_t> size() const = 0;
};

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, CloseFile>;

/// A file, or standard input.
class FileBytes final : public ByteSource {
 public:
  /// @param path  "-" for standard input
  /// @throws std::runtime_error  the file cannot be opened
  explicit FileBytes(const std::string& path);

  std::size_t read(std::span<std::uint8_t> space) override;
  std::uint64_t position() const override { return position_; }
  std::optional<std::uint64_t> size() const override { return size_; }

  /// The bytes that come next, as many as there are up to `size`; they are read again afterwards.
  std::span<const std::uint8_t> peek(std::size_t size);
  /// "standard input" or the path.
  const std::string& name() const { return name_; }

 private:
  std::size_t readFile(std::span<std::uint8_t> space);

  std::string name_;
  FilePtr owned_;
  std::FILE* file_;
  std::vector<std::uint8_t> peeked_;
  std::size_t peekedTaken_ = 0;
  std::uint64_t position_ = 0;
  std::optional<std::uint64_t> size_;
};

/// Bytes told as hexadecimal text: white space is ignored, a # begins a comment that ends with the line.
class HexBytes final : public ByteSource {
 public:
  explicit HexBytes(std::unique_ptr<ByteSource> text) : text_(std::move(text)) {}

  std::size_t read(std::span<std::uint8_t> space) override;
  std::string_view problem() const override { return problem_; }
  std::uint64_t position() const override { return text_->position(); }
  std::optional<std::uint64_t> size() const override { return text_->size(); }

 private:
  void take(char c, std::span<std::uint8_t> space, std::size_t& written);

  std::unique_ptr<ByteSource> text_;
  std::string problem_;
  std::uint64_t line_ = 1;
  std::optional<std::uint8_t> half_;  // the first digit of a byte
  bool inComment_ = false;
};

}  // namespace poker::cmdproc
