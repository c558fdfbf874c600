#pragma once

#include <string>
#include <vector>

namespace poker::cmdproc {

/// A text, and the values of other fields that it was made with, "type 1"; empty where no other field matters.
struct TextVariant {
  std::string with;
  std::string text;  ///< UTF-8
};

struct TextRow {
  std::string code;                   ///< "3", "any other"
  std::vector<TextVariant> variants;  ///< one where all texts of the code are the same
  bool onlyCode;                      ///< no other field is told in the text or changes it
};

/// What the player reads for the codes of a class.
struct TextTable {
  std::string command;
  std::string codeField;
  std::vector<TextRow> rows;  ///< the codes that have texts of their own, and what the other codes read
};

/// Of all classes that have such texts, found by trying the codes 0 to 255 (and of 32-bit codes those around the edges)
/// with a few values of the other fields. Made at the first call, kept as long as the process.
const std::vector<TextTable>& textTables();

}  // namespace poker::cmdproc
