#include <hostkit/CommandFactory.h>
#include <hostkit/StreamFramer.h>
#include <inspect/CommandText.h>
#include <tools/cmdproc/input/DecodeFrame.h>
#include <tools/cmdproc/stats/Traffic.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace poker::cmdproc {

namespace {

constexpr std::size_t kProblemsTold = 5;

std::size_t indexOf(CommandDirection direction) { return static_cast<std::size_t>(direction); }

/// What compression takes off, in percent.
double gain(std::uint64_t bytes, double compressed) {
  return bytes == 0 ? 0 : 100 * (1 - compressed / static_cast<double>(bytes));
}

}  // namespace

std::uint32_t Sizes::percentile(unsigned percent) const {
  const std::uint64_t wanted = (count_ * percent + 99) / 100;
  std::uint64_t seen = 0;
  for (const auto& [size, count] : counts_) {
    seen += count;
    if (seen >= wanted) return size;
  }
  return 0;
}

void Traffic::add(const CapturedFrame& frame) {
  if (!frame.problem.empty()) return refuse(failureText(frame));
  DecodeResult decoded = decodeFrame(frame.bytes);
  if (!decoded) return refuse(failureText(frame, decoded.error));
  const CommandDescription& row = *CommandFactory::find(*decoded.command)->description;
  const CommandDirection direction = frame.direction.value_or(row.direction);
  const auto size = static_cast<std::uint32_t>(frame.bytes.size());
  sizes_.add(size);
  count(row.name, direction, size, 0);
  if (!frame.connection.empty()) {
    auto place = connections_.find(frame.connection);
    if (place == connections_.end()) place = connections_.emplace(frame.connection, Connection()).first;
    ++place->second.count[indexOf(direction)];
    place->second.bytes[indexOf(direction)] += size;
  }
  SrvCompressedCommands* batch = asBatch(*decoded.command);
  if (batch == nullptr) return;
  const std::string_view problem = content_.open(*batch);
  if (!problem.empty()) {
    return refuse(fmt::format("offset {}: SrvCompressedCommands: the batch {}", frame.offset, problem));
  }
  const double share = batch->realSize() == 0 ? 0 : static_cast<double>(size) / batch->realSize();
  CapturedFrame inside;
  while (content_.next(inside)) {
    const CommandClass* named =
        CommandFactory::find(static_cast<ProcessorFamily>(inside.bytes[kLengthSlot + 1]), inside.bytes[kLengthSlot]);
    if (named == nullptr) {
      refuse(fmt::format("offset {}: inside of a batch, family {}, code {}: names no command", frame.offset,
                         inside.bytes[kLengthSlot + 1], inside.bytes[kLengthSlot]));
      continue;
    }
    const auto insideSize = static_cast<std::uint32_t>(inside.bytes.size());
    count(named->name(), direction, insideSize, share * insideSize);
  }
}

void Traffic::count(std::string_view name, CommandDirection direction, std::uint32_t size, double compressed) {
  Class& row = classes_.try_emplace({name, direction}).first->second;
  row.sizes.add(size);
  if (compressed == 0) return;
  row.batched += size;
  row.batchedCompressed += compressed;
}

void Traffic::refuse(std::string problem) {
  ++unreadable_;
  if (problems_.size() < kProblemsTold) problems_.push_back(std::move(problem));
}

std::string Traffic::table() const {
  std::vector<const Classes::value_type*> rows;
  for (const auto& row : classes_) rows.push_back(&row);
  std::stable_sort(rows.begin(), rows.end(),
                   [](const auto* a, const auto* b) { return a->second.sizes.bytes() > b->second.sizes.bytes(); });
  const auto head = [](std::string_view first) {
    return fmt::format("{:<28}  {:<16}  {:>10}  {:>13}  {:>8}  {:>8}  {:>8}  {:>11}\n", first, "direction", "commands",
                       "bytes", "p50", "p99", "largest", "compression");
  };
  const auto line = [](std::string_view name, std::string_view direction, const Sizes& sizes, std::string_view gained) {
    return fmt::format("{:<28}  {:<16}  {:>10}  {:>13}  {:>8}  {:>8}  {:>8}  {:>11}\n", name, direction, sizes.count(),
                       sizes.bytes(), sizes.percentile(50), sizes.percentile(99), sizes.largest(), gained);
  };
  std::string text = head("class");
  for (const auto* row : rows) {
    const Class& each = row->second;
    text += line(row->first.first, toText(row->first.second), each.sizes,
                 each.batched == 0 ? "-" : fmt::format("-{:.0f} %", gain(each.batched, each.batchedCompressed)));
  }
  text += line("as it travelled", "", sizes_, "");
  if (connections_.empty()) return text;
  text += fmt::format("\n{:<28}  {:>18}  {:>15}  {:>18}  {:>15}\n", "connection", "commands to server", "bytes",
                      "commands to client", "bytes");
  constexpr auto kUp = static_cast<std::size_t>(CommandDirection::ClientToServer);
  constexpr auto kDown = static_cast<std::size_t>(CommandDirection::ServerToClient);
  for (const auto& [name, each] : connections_) {
    text += fmt::format("{:<28}  {:>18}  {:>15}  {:>18}  {:>15}\n", name, each.count[kUp], each.bytes[kUp],
                        each.count[kDown], each.bytes[kDown]);
  }
  return text;
}

std::string Traffic::json() const {
  using Json = nlohmann::ordered_json;
  const auto addSizes = [](Json& json, const Sizes& sizes) {
    json["commands"] = sizes.count();
    json["bytes"] = sizes.bytes();
    json["p50"] = sizes.percentile(50);
    json["p99"] = sizes.percentile(99);
    json["largest"] = sizes.largest();
  };
  Json json;
  json["classes"] = Json::array();
  for (const auto& [key, row] : classes_) {
    Json each{{"command", key.first}, {"direction", toText(key.second)}};
    addSizes(each, row.sizes);
    if (row.batched != 0) {
      each["batchedBytes"] = row.batched;
      each["compressedBytes"] = row.batchedCompressed;
    }
    json["classes"].push_back(std::move(each));
  }
  json["connections"] = Json::array();
  for (const auto& [name, row] : connections_) {
    for (const auto direction : {CommandDirection::ClientToServer, CommandDirection::ServerToClient}) {
      json["connections"].push_back({{"connection", name},
                                     {"direction", toText(direction)},
                                     {"commands", row.count[indexOf(direction)]},
                                     {"bytes", row.bytes[indexOf(direction)]}});
    }
  }
  addSizes(json["travelled"], sizes_);
  json["unreadable"] = unreadable_;
  return json.dump() + '\n';
}

}  // namespace poker::cmdproc
