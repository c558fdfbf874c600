#include <tools/cmdproc/Program.h>

int main(int argc, char** argv) { return poker::cmdproc::runProgram(argc, argv); }
