#include <examples/holdem/server/Totals.h>

#include <examples/holdem/shared/LogLine.h>
#include <hostkit/CommandFactory.h>

namespace poker::holdem {

void Totals::count(FrameDirection direction, std::span<const std::uint8_t> frame) {
  const CommandClass* named =
      frame.size() < kShortestFrame
          ? nullptr
          : CommandFactory::find(static_cast<ProcessorFamily>(frame[kLengthSlot + 1]), frame[kLengthSlot]);
  Counts& counts = direction == FrameDirection::In ? in_ : out_;
  Count& count = counts[named != nullptr ? named->name() : "none"];
  ++count.commands;
  count.bytes += frame.size();
}

void Totals::log(Log& log) const {
  for (const auto& [direction, counts] : {std::pair("in", &in_), std::pair("out", &out_)}) {
    Count sum;
    for (const auto& [name, count] : *counts) {
      logLine(log, 0, "total direction={} cmd={} commands={} bytes={}", direction, name, count.commands, count.bytes);
      sum.commands += count.commands;
      sum.bytes += count.bytes;
    }
    logLine(log, 0, "sum direction={} commands={} bytes={}", direction, sum.commands, sum.bytes);
  }
}

}  // namespace poker::holdem
