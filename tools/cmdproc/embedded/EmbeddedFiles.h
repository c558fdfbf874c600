#pragma once

#include <span>
#include <string_view>

namespace poker::cmdproc {

/// A template, a style sheet, a script that the program carries with it.
struct EmbeddedFile {
  std::string_view name;  ///< without its folder: "reference.css"
  std::string_view text;
};

/// All of them; they live as long as the process.
std::span<const EmbeddedFile> embeddedFiles();
/// Null when there is none of that name.
const EmbeddedFile* findEmbeddedFile(std::string_view name);
/// The text of a file.
/// @throws std::logic_error  there is none of that name
std::string_view embeddedFile(std::string_view name);

}  // namespace poker::cmdproc
