#pragma once

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/core/ProcessorFamily.h>
#include <CommandProcessor/platform/Export.h>

namespace poker {

/// The counterpart of ClientMiscCmdProcessor, there for symmetry: no command belongs to it and it has no handlers. The
/// slot order, the destructor and then processCommand, is binding.
class COMMANDPROCESSOR_API SrvMiscCmdProcessor {
 public:
  /// What process() of such commands would take.
  using Results = ProcessorTraits<SrvMiscCmdProcessorType>::Results;

  virtual ~SrvMiscCmdProcessor() = default;

  /// Does nothing by default. The dispatcher reports the flag given at registration.
  virtual void processCommand(const PokerCommandTmpl<SrvMiscCmdProcessorType>&) {}
};

}  // namespace poker
