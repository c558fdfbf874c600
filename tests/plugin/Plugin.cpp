// A library that a program loads while it runs. It uses a pool before the program can call it, and after it can.

#include <CommandProcessor/commands/session/ClKeepAlive.h>

#include <cstdint>
#include <cstdio>

namespace {

struct UsesThePool {
  UsesThePool() { poker::CachedCmdCreator<poker::ClKeepAlive>::create().release(); }
  ~UsesThePool() {
    poker::CachedCmdCreator<poker::ClKeepAlive>::create().release();
    std::fputs("plugin done\n", stderr);
  }
} usesThePool;

}  // namespace

extern "C" {
__attribute__((visibility("default"))) const void* pluginsPool() {
  return &poker::CachedCmdCreator<poker::ClKeepAlive>::cashedCmds;
}

__attribute__((visibility("default"))) poker::PokerCommandI* makeInPlugin(std::uint32_t number) {
  poker::ClKeepAlive& command = poker::CachedCmdCreator<poker::ClKeepAlive>::create();
  command.init(number);
  return &command;
}
}
