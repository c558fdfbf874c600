#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace poker::test {

/// `[decode-only] Name {fields as JSON} = bytes in hexadecimal`, one a line; # begins a comment line.
struct GoldenLine {
  std::string where;
  std::string name;
  std::string json;
  std::string hex;
  bool decodeOnly = false;
};

/// The lines of all .txt files of a folder.
inline std::vector<GoldenLine> goldenLines(const std::filesystem::path& folder) {
  std::vector<GoldenLine> lines;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    if (file.path().extension() != ".txt") continue;
    std::ifstream in(file.path());
    std::string text;
    for (int number = 1; std::getline(in, text); ++number) {
      if (text.find_first_not_of(" \t") == std::string::npos || text[0] == '#') continue;
      GoldenLine line;
      line.where = file.path().filename().string() + ":" + std::to_string(number);
      const std::string mark = "decode-only ";
      if (text.rfind(mark, 0) == 0) {
        line.decodeOnly = true;
        text.erase(0, mark.size());
      }
      const auto open = text.find('{'), close = text.rfind('}'), equals = text.rfind('=');
      if (open == std::string::npos || close == std::string::npos || equals < close || open < 2) {
        ADD_FAILURE() << line.where << ": not a golden line";
        continue;
      }
      line.name = text.substr(0, open - 1);
      line.json = text.substr(open, close - open + 1);
      line.hex = text.substr(equals + 1);
      lines.push_back(line);
    }
  }
  return lines;
}

inline std::vector<std::uint8_t> bytesOf(const std::string& hex) {
  std::vector<std::uint8_t> bytes;
  std::string digits;
  std::copy_if(hex.begin(), hex.end(), std::back_inserter(digits), [](char c) { return c != ' '; });
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

}  // namespace poker::test
