#include <CommandProcessor/core/CmdDispatcher.h>

#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/ClientMiscCmdProcessor.h>
#include <CommandProcessor/core/ClientTourCmdProcessor.h>
#include <CommandProcessor/core/DisptachException.h>
#include <CommandProcessor/core/PokerCommandI.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>
#include <CommandProcessor/core/SrvMiscCmdProcessor.h>
#include <CommandProcessor/core/SrvTourCmdProcessor.h>

namespace poker {
namespace {

template <class Processor>
Processor& required(Processor* processor, const char* message) {
  if (processor == nullptr) throw DisptachException(message);
  return *processor;
}

}  // namespace

const char* DisptachException::what() const noexcept { return message_; }

CmdDispatcherI::~CmdDispatcherI() = default;

bool CmdDispatcherI::dispatchCommand(PokerCommandI& command) { return command.dispatch(*this); }

bool CmdDispatcher::dispatchToProcesor(PokerCommandTmpl<SrvMiscCmdProcessorType>& command) const {
  required(srvMiscProcessor_, "empty srvMiscProcessor").processCommand(command);
  return srvMiscResult_;
}

bool CmdDispatcher::dispatchToProcesor(PokerCommandTmpl<ClientMiscCmdProcessorType>& command) const {
  required(clMiscProcessor_, "empty clMiscProcessor").processCommand(command);
  return clMiscResult_;
}

bool CmdDispatcher::dispatchToProcesor(PokerCommandTmpl<SrvTourCmdProcessorType>& command) const {
  required(srvTourProcessor_, "empty srvTourProcessor").processCommand(command);
  return srvTourResult_;
}

bool CmdDispatcher::dispatchToProcesor(PokerCommandTmpl<ClientTourCmdProcessorType>& command) const {
  return required(clTourProcessor_, "empty clTourProcessor").processCommand(command);
}

bool CmdDispatcher::dispatchToProcesor(PokerCommandTmpl<SrvCmdProcessorType>& command) const {
  required(srvProcessor_, "empty srvProcessor").processCommand(command);
  return srvResult_;
}

bool CmdDispatcher::dispatchToProcesor(PokerCommandTmpl<ClientCmdProcessorType>& command) const {
  return required(clProcessor_, "empty clProcessor").processCommand(command);
}

void CmdDispatcher::registerClientCmdProcessor(ClientCmdProcessor& processor) { clProcessor_ = &processor; }

void CmdDispatcher::registerClientTourCmdProcessor(ClientTourCmdProcessor& processor) { clTourProcessor_ = &processor; }

void CmdDispatcher::registerSrvCmdProcessor(SrvCmdProcessor& processor, bool result) {
  srvProcessor_ = &processor;
  srvResult_ = result;
}

void CmdDispatcher::registerSrvTourCmdProcessor(SrvTourCmdProcessor& processor, bool result) {
  srvTourProcessor_ = &processor;
  srvTourResult_ = result;
}

void CmdDispatcher::registerClientMiscCmdProcessor(ClientMiscCmdProcessor& processor, bool result) {
  clMiscProcessor_ = &processor;
  clMiscResult_ = result;
}

void CmdDispatcher::registerSrvMiscCmdProcessor(SrvMiscCmdProcessor& processor, bool result) {
  srvMiscProcessor_ = &processor;
  srvMiscResult_ = result;
}

}  // namespace poker
