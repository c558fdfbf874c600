#pragma once

#include <CommandProcessor/platform/Export.h>

#include <exception>
#include <string>

namespace poker {

/// Tells that bytes from the wire could not be read: they ran out, or a text did not fit its storage.
///
/// It is thrown as a pointer to a heap object (`throw new …`): whoever catches it owns it and deletes it. The host
/// kit's decodeCommand() is the one place that does so; hosts that use the kit never see the pointer.
class COMMANDPROCESSOR_API CommandDeserializeException : public std::exception {
 public:
  explicit CommandDeserializeException(std::string message);
  ~CommandDeserializeException() override;

  /// The text of the check that failed, as logs and peers show it.
  const std::string& message() const noexcept { return message_; }
  const char* what() const noexcept override;

 private:
  std::string message_;
};

}  // namespace poker
