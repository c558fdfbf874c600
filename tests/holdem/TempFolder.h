#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace poker::holdem::test {

/// A folder for the files of one test.
struct TempFolder {
  TempFolder() {
    std::string name = std::filesystem::temp_directory_path() / "bank-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for temporary files");
    path = name;
  }
  ~TempFolder() { std::filesystem::remove_all(path); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  std::string file(const char* name) const { return path / name; }

  std::filesystem::path path;
};

}  // namespace poker::holdem::test
