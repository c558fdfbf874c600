#include <tools/cmdproc/Program.h>
namespace poker::cmdproc {
void addManual(CLI::App&, Action&) {}
void addCompletion(CLI::App&, Action&) {}
}  // namespace poker::cmdproc
