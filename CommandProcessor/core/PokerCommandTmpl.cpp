#include <CommandProcessor/core/CmdDispatcher.h>
#include <CommandProcessor/core/PokerCommandTmpl.h>

namespace poker {

template <class ProcessorType>
PokerCommandTmpl<ProcessorType>::PokerCommandTmpl(TypeCode code) : typeCode_(static_cast<std::uint32_t>(code)) {}

template <class ProcessorType>
PokerCommandTmpl<ProcessorType>::~PokerCommandTmpl() = default;

template <class ProcessorType>
PokerCommandTmpl<ProcessorType>& PokerCommandTmpl<ProcessorType>::operator=(const PokerCommandTmpl& other) {
  PokerCommand::operator=(other);
  return *this;
}

template <class ProcessorType>
bool PokerCommandTmpl<ProcessorType>::dispatch(CmdDispatcherI& dispatcher) {
  requireInUse("dispatch()");
  return dispatcher.dispatchToProcesor(*this);
}

template <class ProcessorType>
std::uint32_t PokerCommandTmpl<ProcessorType>::getTypeCode() const {
  return typeCode_;
}

template class PokerCommandTmpl<ClientCmdProcessorType>;
template class PokerCommandTmpl<SrvCmdProcessorType>;
template class PokerCommandTmpl<ClientTourCmdProcessorType>;
template class PokerCommandTmpl<SrvTourCmdProcessorType>;
template class PokerCommandTmpl<ClientMiscCmdProcessorType>;
template class PokerCommandTmpl<SrvMiscCmdProcessorType>;

}  // namespace poker
