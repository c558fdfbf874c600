#include <CommandProcessor/wire/CommandDeserializeException.h>

#include <utility>

namespace poker {

CommandDeserializeException::CommandDeserializeException(std::string message) : message_(std::move(message)) {}

CommandDeserializeException::~CommandDeserializeException() = default;

const char* CommandDeserializeException::what() const noexcept { return message_.c_str(); }

}  // namespace poker
