#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace poker::cmdproc {

/// The protocol's reference as one HTML page that needs nothing else, neither files nor a network.
std::string referenceHtml();
/// The same, but for what a page can do, as Markdown.
std::string referenceMarkdown();

/// What both are filled with: families with their commands, types, records, text tables. Names are in Reference.cpp.
nlohmann::ordered_json referenceValues();

}  // namespace poker::cmdproc
