#include <tools/cmdproc/embedded/EmbeddedFiles.h>
#include <tools/cmdproc/embedded/Template.h>

#include <kainjow/mustache.hpp>
#include <nlohmann/json.hpp>

#include <stdexcept>

namespace poker::cmdproc {

namespace {

using kainjow::mustache::data;
using Json = nlohmann::ordered_json;

data toData(const Json& json) {
  if (json.is_object()) {
    data object(data::type::object);
    for (const auto& member : json.items()) object.set(member.key(), toData(member.value()));
    return object;
  }
  if (json.is_array()) {
    data list(data::type::list);
    for (const Json& each : json) list.push_back(toData(each));
    return list;
  }
  if (json.is_boolean()) return data(json.get<bool>());
  if (json.is_null()) return data(false);
  if (!json.is_string()) return data(json.dump());
  const auto& text = json.get_ref<const std::string&>();
  return text.empty() ? data(false) : data(text);
}

}  // namespace

std::string fillTemplate(std::string_view file, const Json& values, Escape escape) {
  kainjow::mustache::mustache mustache{std::string(embeddedFile(file))};
  if (!mustache.is_valid()) throw std::logic_error(std::string(file) + ": " + mustache.error_message());
  mustache.set_custom_escape(std::move(escape));
  data root = toData(values);
  for (const EmbeddedFile& each : embeddedFiles()) root.set(std::string(each.name), data(std::string(each.text)));
  std::string filled = mustache.render(root);
  if (!mustache.is_valid())
    throw std::logic_error(std::string(file) + ": " + mustache.error_message());  // of a partial
  return filled;
}

std::string escapeHtml(const std::string& text) { return kainjow::mustache::html_escape(text); }

std::string withoutEmptyLines(const std::string& text) {
  std::string kept;
  bool atStart = true;
  for (const char c : text) {
    if (c != '\n' || !atStart) kept += c;
    atStart = c == '\n';
  }
  return kept;
}

}  // namespace poker::cmdproc
