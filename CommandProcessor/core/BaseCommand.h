#pragma once

#include <CommandProcessor/core/PokerCommandTmpl.h>
#include <CommandProcessor/wire/FieldWords.h>

namespace poker {

/// What the intermediate bases share: classes with fields of their own, whose type code is chosen by whoever constructs
/// them. An object can be sent as it is; its process() does nothing and it has no pool.
///
/// The class states its fields in its header (commands that derive from it begin their own list with its list) and its
/// source emits the bodies: `template class BaseCommand<SrvTableStateUpdate>;` (FieldsImpl.h).
template <class T, class Base = PokerCommandTmpl<SrvCmdProcessorType>>
class COMMANDPROCESSOR_API BaseCommand : public Base {
 public:
  using typename Base::Processor;
  using typename Base::Results;

  ~BaseCommand() override;
  void serialize(SerializeCommandBuf& buf) const override;
  void deserialize(DeserializeCommandBuf& buf) override;
  /// Does nothing.
  void process(Results& results, Processor& processor) override;

 protected:
  using Base::Base;
  BaseCommand(const BaseCommand&) = default;
  BaseCommand& operator=(const BaseCommand&) = default;
};

}  // namespace poker
