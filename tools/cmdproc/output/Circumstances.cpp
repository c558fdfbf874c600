#include <CommandProcessor/types/FieldJson.h>
#include <inspect/CommandText.h>
#include <tools/cmdproc/output/Circumstances.h>

#include <fmt/format.h>

#include <chrono>

namespace poker::cmdproc {

namespace {

bool isFromCapture(const CapturedFrame& frame) { return frame.time || frame.direction || !frame.connection.empty(); }

}  // namespace

std::string timeText(std::int64_t nanosecondsSince1970) {
  using namespace std::chrono;
  const sys_time<nanoseconds> time{nanoseconds(nanosecondsSince1970)};
  const auto day = floor<days>(time);
  const year_month_day date(day);
  const hh_mm_ss clock(time - day);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:09}Z", static_cast<int>(date.year()),
                     static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), clock.hours().count(),
                     clock.minutes().count(), clock.seconds().count(), clock.subseconds().count());
}

std::string circumstancesText(const CapturedFrame& frame) {
  std::string text;
  const auto add = [&text](std::string_view part) {
    if (!text.empty()) text += ' ';
    text += part;
  };
  if (frame.time) add(timeText(*frame.time));
  if (!frame.connection.empty()) add(frame.connection);
  if (frame.direction) add(*frame.direction == CommandDirection::ClientToServer ? "->" : "<-");
  if (!frame.table.empty()) add(quoted(frame.table));
  return text;
}

std::string circumstancesJson(const CapturedFrame& frame, bool offset) {
  std::string json;
  const auto name = [&json](std::string_view key) -> std::string& {
    if (!json.empty()) json += ',';
    return json.append("\"").append(key).append("\":");
  };
  if (offset || isFromCapture(frame)) name("offset") += std::to_string(frame.offset);
  if (frame.time) appendJsonString(name("time"), timeText(*frame.time));
  if (frame.direction) appendJsonString(name("direction"), toText(*frame.direction));
  if (!frame.connection.empty()) appendJsonString(name("connection"), frame.connection);
  if (!frame.table.empty()) appendJsonString(name("table"), frame.table);
  return json;
}

}  // namespace poker::cmdproc
