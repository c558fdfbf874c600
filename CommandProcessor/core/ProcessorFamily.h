#pragma once

#include <cstdint>

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/core/CommandType.h>
#include <CommandProcessor/platform/Export.h>

namespace poker {

/// The second byte of every command's frame; together with the type code it names the command's class. Commands of the
/// connection family are handled by the processors of the client and server families.
enum class ProcessorFamily : std::uint8_t {
  Connection = 0,
  Server = 1,
  Client = 2,
  ServerTour = 3,
  ClientTour = 4,
  ServerMisc = 5,  ///< has a processor and no commands: no frame carries it
  ClientMisc = 6,
};

// Tags: the type argument that tells the six kinds of command, result collection and dispatch apart. They are exported
// because a template instantiated on a type is visible from outside the library only as far as that type is.
struct COMMANDPROCESSOR_API ClientCmdProcessorType {};
struct COMMANDPROCESSOR_API SrvCmdProcessorType {};
struct COMMANDPROCESSOR_API ClientTourCmdProcessorType {};
struct COMMANDPROCESSOR_API SrvTourCmdProcessorType {};
struct COMMANDPROCESSOR_API ClientMiscCmdProcessorType {};
struct COMMANDPROCESSOR_API SrvMiscCmdProcessorType {};

namespace detail {
template <class ProcessorClass, class AnswerTag, int kServerSide, class Code, ProcessorFamily kFamily>
struct ProcessorTraitsOf {
  using Processor = ProcessorClass;
  using Results = CommandsResult<PokerCommandTmpl<AnswerTag>, kServerSide>;
  using TypeCode = Code;
  static constexpr ProcessorFamily family = kFamily;
};
}  // namespace detail

/// What belongs to one of the tags:
///   Processor  the class whose handlers the commands call
///   Results    what the handlers put their answers into: commands of the opposite direction, collected on the server's
///              side (1) and only passed through on the client's (0); answers to misc commands are server commands
///   TypeCode   the enumeration of the type codes
///   family     the family that the commands are dispatched by; four commands write Connection into their frame instead
///              (CommandInfo<T>::family in Catalogue.h is what a class writes)
template <class ProcessorType>
struct ProcessorTraits;

template <>
struct ProcessorTraits<ClientCmdProcessorType>
    : detail::ProcessorTraitsOf<ClientCmdProcessor, SrvCmdProcessorType, 1, CommandType, ProcessorFamily::Client> {};
template <>
struct ProcessorTraits<SrvCmdProcessorType>
    : detail::ProcessorTraitsOf<SrvCmdProcessor, ClientCmdProcessorType, 0, CommandType, ProcessorFamily::Server> {};
template <>
struct ProcessorTraits<ClientTourCmdProcessorType>
    : detail::ProcessorTraitsOf<ClientTourCmdProcessor, SrvTourCmdProcessorType, 1, CommandType,
                                ProcessorFamily::ClientTour> {};
template <>
struct ProcessorTraits<SrvTourCmdProcessorType>
    : detail::ProcessorTraitsOf<SrvTourCmdProcessor, ClientTourCmdProcessorType, 0, CommandType,
                                ProcessorFamily::ServerTour> {};
template <>
struct ProcessorTraits<ClientMiscCmdProcessorType>
    : detail::ProcessorTraitsOf<ClientMiscCmdProcessor, SrvCmdProcessorType, 1, MiscCommandType,
                                ProcessorFamily::ClientMisc> {};
template <>
struct ProcessorTraits<SrvMiscCmdProcessorType>
    : detail::ProcessorTraitsOf<SrvMiscCmdProcessor, ClientMiscCmdProcessorType, 0, MiscCommandType,
                                ProcessorFamily::ServerMisc> {};

}  // namespace poker
