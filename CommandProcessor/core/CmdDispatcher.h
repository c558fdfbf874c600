#pragma once

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/core/ProcessorFamily.h>
#include <CommandProcessor/platform/Export.h>

namespace poker {

/// Takes a command to the processor of its family. The virtual operations stand in slot order, which is binding.
class COMMANDPROCESSOR_API CmdDispatcherI {
 public:
  virtual ~CmdDispatcherI();

  // One for each family; a command calls the one of its own.
  virtual bool dispatchToProcesor(PokerCommandTmpl<SrvMiscCmdProcessorType>& command) const = 0;
  virtual bool dispatchToProcesor(PokerCommandTmpl<ClientMiscCmdProcessorType>& command) const = 0;
  virtual bool dispatchToProcesor(PokerCommandTmpl<SrvTourCmdProcessorType>& command) const = 0;
  virtual bool dispatchToProcesor(PokerCommandTmpl<ClientTourCmdProcessorType>& command) const = 0;
  virtual bool dispatchToProcesor(PokerCommandTmpl<SrvCmdProcessorType>& command) const = 0;
  virtual bool dispatchToProcesor(PokerCommandTmpl<ClientCmdProcessorType>& command) const = 0;

  /// Dispatches a command whose family is not known here: the command picks the overload and its result is passed on.
  /// The command is not released.
  bool dispatchCommand(PokerCommandI& command);
};

/// The dispatcher that hosts register their processors with. It owns none of them: a processor must outlive its last
/// dispatch. There is no lock. Any number of threads may dispatch at once, each with a command of its own, but register
/// only while none does.
class COMMANDPROCESSOR_API CmdDispatcher : public CmdDispatcherI {
 public:
  CmdDispatcher() = default;

  // Each overload throws DisptachException when its family has no processor. The two client families return what their
  // processor's processCommand answered, the other four the flag given at registration, whatever it answered.
  bool dispatchToProcesor(PokerCommandTmpl<SrvMiscCmdProcessorType>& command) const override;
  bool dispatchToProcesor(PokerCommandTmpl<ClientMiscCmdProcessorType>& command) const override;
  bool dispatchToProcesor(PokerCommandTmpl<SrvTourCmdProcessorType>& command) const override;
  bool dispatchToProcesor(PokerCommandTmpl<ClientTourCmdProcessorType>& command) const override;
  bool dispatchToProcesor(PokerCommandTmpl<SrvCmdProcessorType>& command) const override;
  bool dispatchToProcesor(PokerCommandTmpl<ClientCmdProcessorType>& command) const override;

  // A later registration replaces the earlier one.
  void registerClientCmdProcessor(ClientCmdProcessor& processor);
  void registerClientTourCmdProcessor(ClientTourCmdProcessor& processor);

  // With the flag that dispatching a command of the family returns from now on; its meaning is the host's.
  void registerSrvCmdProcessor(SrvCmdProcessor& processor, bool result);
  void registerSrvTourCmdProcessor(SrvTourCmdProcessor& processor, bool result);
  void registerClientMiscCmdProcessor(ClientMiscCmdProcessor& processor, bool result);
  void registerSrvMiscCmdProcessor(SrvMiscCmdProcessor& processor, bool result);

 private:
  ClientCmdProcessor* clProcessor_ = nullptr;
  SrvCmdProcessor* srvProcessor_ = nullptr;
  bool srvResult_ = true;
  ClientTourCmdProcessor* clTourProcessor_ = nullptr;
  SrvTourCmdProcessor* srvTourProcessor_ = nullptr;
  bool srvTourResult_ = true;
  ClientMiscCmdProcessor* clMiscProcessor_ = nullptr;
  bool clMiscResult_ = true;
  SrvMiscCmdProcessor* srvMiscProcessor_ = nullptr;
  bool srvMiscResult_ = true;
};

}  // namespace poker
