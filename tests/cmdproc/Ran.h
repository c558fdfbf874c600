#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace poker::test {

/// A folder of its own, removed at the end.
class TempFolder {
 public:
  TempFolder() {
    std::string pattern = std::filesystem::temp_directory_path() / "cmdproc-test-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = pattern;
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string file(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

inline std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeFile(const std::string& path, std::string_view content) {
  std::ofstream(path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
}

/// What a run of the program has said.
struct Ran {
  int status;
  std::string out, err;
};

/// Runs cmdproc with the arguments, as a shell reads them, and the input.
inline Ran cmdproc(const std::string& arguments, std::string_view input = {}) {
  const TempFolder folder;
  writeFile(folder.file("in"), input);
  const std::string command = std::string(CMDPROC_PROGRAM) + ' ' + arguments + " <" + folder.file("in") + " >" +
                              folder.file("out") + " 2>" + folder.file("err");
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(folder.file("out")), readFile(folder.file("err"))};
}

}  // namespace poker::test
