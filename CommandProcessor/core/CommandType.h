#pragma once

#include <cstdint>

#include <CommandProcessor/platform/Export.h>

namespace poker {

#ifndef _WIN32
// As with the classes, clang shows a template that is instantiated on an enumeration only as far as that enumeration.
enum class COMMANDPROCESSOR_API CommandType : std::uint32_t;
enum class COMMANDPROCESSOR_API MiscCommandType : std::uint32_t;
#endif

/// Type codes of all families but the misc ones, each named after its class. A code is unique only within a family:
/// enumerators of different families can have the same value. Every code fits into the one byte that travels.
enum class CommandType : std::uint32_t {
#define COMMAND(family, code, Class, Processor, handler) Class = code,
#define MISC_COMMAND(code, Class, handler)
#include <CommandProcessor/core/CommandList.inc>
};

/// Type codes of the client misc family, each named after its class. ClMiscDumpManager and ClMiscIncreasePlayMoney
/// share one value. Every code fits into the one byte that travels.
enum class MiscCommandType : std::uint32_t {
#define COMMAND(family, code, Class, Processor, handler)
#define MISC_COMMAND(code, Class, handler) Class = code,
#include <CommandProcessor/core/CommandList.inc>
};

}  // namespace poker
