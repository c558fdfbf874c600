#pragma once

#include <exception>

#include <CommandProcessor/platform/Export.h>

namespace poker {

/// A command was dispatched whose family has no registered processor. Thrown by value. Nothing was changed before the
/// throw, and the command still belongs to the caller.
class COMMANDPROCESSOR_API DisptachException : public std::exception {
 public:
  /// @param message  constant text; the exception keeps the pointer, not a copy
  explicit DisptachException(const char* message) noexcept : message_(message) {}

  /// For example "empty clProcessor".
  const char* what() const noexcept override;

 private:
  const char* message_;
};

}  // namespace poker
