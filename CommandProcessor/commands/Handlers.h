#pragma once

// Which handler a command calls: the last column of the catalogue, as code.

#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/ClientMiscCmdProcessor.h>
#include <CommandProcessor/core/ClientTourCmdProcessor.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>
#include <CommandProcessor/core/SrvTourCmdProcessor.h>

namespace poker::detail {

template <class T>
struct Handler;

// The misc family's handlers take the command alone; all others take the result collection too.
#define COMMAND(family, code, Class, OfProcessor, handler)               \
  template <>                                                            \
  struct Handler<Class> {                                                \
    static void call(auto& results, auto& processor, auto& command) {    \
      if constexpr (requires { processor.handler(results, command); }) { \
        processor.handler(results, command);                             \
      } else {                                                           \
        processor.handler(command);                                      \
      }                                                                  \
    }                                                                    \
  };
#define UNHANDLED_COMMAND(family, code, Class, OfProcessor) \
  template <>                                               \
  struct Handler<Class> {                                   \
    static void call(auto&, auto&, auto&) {}                \
  };
#include <CommandProcessor/core/CommandList.inc>

}  // namespace poker::detail
