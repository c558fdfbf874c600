#include <examples/holdem/client/terminal/TextTable.h>

#include <examples/holdem/client/terminal/Text.h>

#include <algorithm>

namespace poker::holdem {

std::vector<std::string> TextTable::lines() const {
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    widths.push_back(columnsOf(columns_[i].first));
    for (const std::vector<std::string>& row : rows_) widths[i] = std::max(widths[i], columnsOf(row[i]));
  }
  const auto cellOf = [&](std::size_t i, const std::string& text) {
    const std::string blanks(widths[i] - columnsOf(text), ' ');
    return columns_[i].second == Align::Right ? blanks + text : text + blanks;
  };
  std::vector<std::string> lines(1 + rows_.size());
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    lines[0] += "  " + cellOf(i, columns_[i].first);
    for (std::size_t row = 0; row < rows_.size(); ++row) lines[row + 1] += "  " + cellOf(i, rows_[row][i]);
  }
  for (std::string& line : lines) line.resize(line.find_last_not_of(' ') + 1);
  return lines;
}

}  // namespace poker::holdem
