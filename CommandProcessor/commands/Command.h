#pragma once

#include <CommandProcessor/core/Catalogue.h>
#include <CommandProcessor/core/PokerCommandTmpl.h>
#include <CommandProcessor/pool/CachedCmdCreator.h>
#include <CommandProcessor/wire/FieldWords.h>

namespace poker {

class FieldVisitor;

/// What every concrete command shares. A command class adds its init(), its accessors and its field list:
///
///     class COMMANDPROCESSOR_API ClSitDown final : public Command<ClSitDown> {
///      public:
///       void init(SeatID seat, ...);          // empties the connection set, then assigns every field
///       ...
///      private:
///       friend FieldAccess;                   // the pool constructs, the archives read fields
///       ClSitDown() = default;
///       static void fields(auto& self, auto&& field);
///       ...
///     };
///
/// Its type code, family byte and handler come from its row in core/CommandList.inc. The bodies stand in CommandImpl.h
/// and are emitted once, by two lines at the end of the class's source:
///
///     template class Command<ClSitDown>;
///     template class CachedCmdCreator<ClSitDown>;
///
/// @tparam Base  an intermediate base with fields of its own, or nothing in between
template <class T, class Base = PokerCommandTmpl<typename CommandInfo<T>::ProcessorType>>
class COMMANDPROCESSOR_API Command : public Base {
 public:
  using typename Base::Processor;
  using typename Base::Results;

  Command(const Command&) = delete;
  ~Command() override;

  PokerCommandI* clone() override;
  void serialize(SerializeCommandBuf& buf) const override;
  void deserialize(DeserializeCommandBuf& buf) override;
  void release() override;
  void process(Results& results, Processor& processor) override;

  /// Shows the fields to the visitor, by name and in wire order.
  void visitFields(FieldVisitor& visitor) const;
  /// Lets the visitor set the fields; fields that never travel are cleared, the connection set stays.
  /// @throws FieldValueError  when a value does not fit; the fields before it are set
  void assignFields(FieldVisitor& visitor);
  /// Overwrites passwords, PINs and secure-channel bytes in memory. To be called before release() by a host that cares.
  void wipeSecrets();
  /// Whether the receiver can read back all that is held: no list is longer than its count can tell.
  bool fitsOnWire() const;

 protected:
  Command();
  Command& operator=(const Command&) = default;
};

}  // namespace poker
