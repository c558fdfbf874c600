#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace poker::holdem {

/// Rows of cells for people: every column is as wide as its widest cell.
class TextTable {
 public:
  enum class Align : bool { Left, Right };
  using Column = std::pair<std::string, Align>;

  explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// @param cells  one a column, fit for a terminal
  void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  /// The head, then a line a row; without line ends, nor blanks at the end.
  std::vector<std::string> lines() const;

 private:
  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace poker::holdem
