#pragma once

#include <CommandProcessor/core/Catalogue.h>
#include <CommandProcessor/core/PokerCommandI.h>
#include <CommandProcessor/wire/FieldVisitor.h>

#include <string_view>

namespace poker {

/// What can be done with the fields of a command class, for code that knows the class only by its name, its frame or an
/// object of it. One row per class that the library has; the rows live as long as the process. Any thread.
struct CommandFields {
  const CommandDescription* description;
  /// An empty object from the class's pool, to be released by the caller.
  PokerCommandI& (*create)();
  /// Shows the fields of an object of this class, by name and in wire order.
  void (*visit)(const PokerCommandI& command, FieldVisitor& visitor);
  /// Lets the visitor set the fields of an object of this class.
  /// @throws FieldValueError  when a value does not fit; the fields before it are set
  void (*assign)(PokerCommandI& command, FieldVisitor& visitor);

  /// The row of the object's class; null for a class that is not in the catalogue.
  static const CommandFields* of(const PokerCommandI& command);
  /// The row of the class with that exact name; null when there is none.
  static const CommandFields* of(std::string_view name);
};

}  // namespace poker
