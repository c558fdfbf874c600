#include <tools/cmdproc/embedded/EmbeddedFiles.h>

#include <stdexcept>
#include <string>

namespace poker::cmdproc {

const EmbeddedFile* findEmbeddedFile(std::string_view name) {
  for (const EmbeddedFile& file : embeddedFiles()) {
    if (file.name == name) return &file;
  }
  return nullptr;
}

std::string_view embeddedFile(std::string_view name) {
  const EmbeddedFile* file = findEmbeddedFile(name);
  if (file == nullptr) throw std::logic_error("no file " + std::string(name) + " is part of this program");
  return file->text;
}

}  // namespace poker::cmdproc
