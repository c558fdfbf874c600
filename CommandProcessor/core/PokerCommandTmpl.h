#pragma once

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/core/CommandType.h>
#include <CommandProcessor/core/PokerCommand.h>
#include <CommandProcessor/core/ProcessorFamily.h>

namespace poker {

/// A command of one processor family, with its type code. The pair (family, code) names its class.
template <class ProcessorType>
class COMMANDPROCESSOR_API PokerCommandTmpl : public PokerCommand {
 public:
  using Traits = ProcessorTraits<ProcessorType>;
  using Processor = typename Traits::Processor;
  using Results = typename Traits::Results;
  using TypeCode = typename Traits::TypeCode;

  bool dispatch(CmdDispatcherI& dispatcher) override;
  std::uint32_t getTypeCode() const override;

  /// Calls the processor's handler for this class.
  virtual void process(Results& results, Processor& processor) = 0;

  ~PokerCommandTmpl() override;

 protected:
  explicit PokerCommandTmpl(TypeCode code);
  PokerCommandTmpl(const PokerCommandTmpl&) = default;
  /// Copies the connections; the type code stays what its constructor made it.
  PokerCommandTmpl& operator=(const PokerCommandTmpl& other);

 private:
  const std::uint32_t typeCode_;
};

extern template class PokerCommandTmpl<ClientCmdProcessorType>;
extern template class PokerCommandTmpl<SrvCmdProcessorType>;
extern template class PokerCommandTmpl<ClientTourCmdProcessorType>;
extern template class PokerCommandTmpl<SrvTourCmdProcessorType>;
extern template class PokerCommandTmpl<ClientMiscCmdProcessorType>;
extern template class PokerCommandTmpl<SrvMiscCmdProcessorType>;

}  // namespace poker
