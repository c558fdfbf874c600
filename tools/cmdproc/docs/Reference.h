#pragma once

#include <string>

namespace poker::cmdproc {

/// The protocol's reference as one HTML page that needs nothing else, neither files nor a network.
std::string referenceHtml();
/// The same, but for what a page can do, as Markdown.
std::string referenceMarkdown();

/// What a family is for, in a few words.
struct FamilyText {
  const char* name;
  const char* meaning;
};
FamilyText familyText(unsigned family);
/// There are families 0 to this one.
constexpr unsigned kLastFamily = 6;

}  // namespace poker::cmdproc
