#pragma once

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <string>
#include <string_view>

namespace poker::cmdproc {

/// How a value is written so that it means itself in the text around it.
using Escape = std::function<std::string(const std::string&)>;

/// Fills in one of the embedded files, a Mustache template. Its partials are embedded files too: {{>options.mdoc}}.
/// @param values  what the template names; a false, an empty list or an empty text leaves its section out
/// @param escape  of the values between two braces; of those between three nothing is changed
/// @throws std::logic_error  there is no such file, or it is no template
std::string fillTemplate(std::string_view file, const nlohmann::ordered_json& values, Escape escape);

/// For HTML's text and attributes.
std::string escapeHtml(const std::string& text);

/// Templates leave empty lines where nothing stands; for texts in which they mean something.
std::string withoutEmptyLines(const std::string& text);

}  // namespace poker::cmdproc
