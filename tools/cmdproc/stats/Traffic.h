#pragma once

#include <inspect/capture/CapturedFrame.h>
#include <tools/cmdproc/input/Batches.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace poker::cmdproc {

/// Sizes of frames, with exact percentiles: each size that occurs is counted.
class Sizes {
 public:
  void add(std::uint32_t size) {
    ++counts_[size];
    ++count_;
    bytes_ += size;
  }
  std::uint64_t count() const { return count_; }
  std::uint64_t bytes() const { return bytes_; }
  /// The smallest size that so many percent of the frames do not exceed; 0 when there are none.
  std::uint32_t percentile(unsigned percent) const;
  std::uint32_t largest() const { return counts_.empty() ? 0 : counts_.rbegin()->first; }

 private:
  std::map<std::uint32_t, std::uint64_t> counts_;
  std::uint64_t count_ = 0;
  std::uint64_t bytes_ = 0;
};

/// Counts frames by class, direction and connection. A batch counts as itself, what is inside of it as what it is; a
/// command's share of its batch is its share of the inflated bytes. Memory depends on how many classes, connections and
/// sizes there are, not on how many frames.
class Traffic {
 public:
  void add(const CapturedFrame& frame);

  /// For people: a row a class, a row a connection.
  std::string table() const;
  /// For programs: one object on one line.
  std::string json() const;

  /// Frames that could not be read, and what is wrong with the first few.
  std::uint64_t unreadable() const { return unreadable_; }
  const std::vector<std::string>& problems() const { return problems_; }

 private:
  struct Class {
    Sizes sizes;
    std::uint64_t batched = 0;     // bytes of those that travelled in batches ...
    double batchedCompressed = 0;  // ... and of their shares of the batches
  };
  using Classes = std::map<std::pair<std::string_view, CommandDirection>, Class>;
  struct Connection {
    std::uint64_t count[2] = {};  // by direction
    std::uint64_t bytes[2] = {};
  };

  void count(std::string_view name, CommandDirection direction, std::uint32_t size, double compressed);
  void refuse(std::string problem);

  Classes classes_;
  std::map<std::string, Connection, std::less<>> connections_;
  Sizes sizes_;  // of the frames as they travelled
  std::uint64_t unreadable_ = 0;
  std::vector<std::string> problems_;
  BatchContent content_;
};

}  // namespace poker::cmdproc
