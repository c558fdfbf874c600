#pragma once

#include <CommandProcessor/commands/Command.h>

#include <string>

namespace poker {

/// The server cannot serve this client, in answer to ClHandShake, and names the server to use instead.
class COMMANDPROCESSOR_API ServiceNotAvailable final : public Command<ServiceNotAvailable> {
 public:
  /// @param newServer  address of the server to use instead; null counts as ""
  void init(const char* newServer);

  std::string newServer() const { return newServer_; }

 private:
  friend FieldAccess;
  ServiceNotAvailable() = default;
  static void fields(auto& self, auto&& field);

  std::string newServer_;
};

}  // namespace poker
