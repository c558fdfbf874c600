#pragma once

#include <CommandProcessor/core/PokerCommandTmpl.h>

#include <cstdint>

namespace poker {

/// What the client tournament commands share: the tournament that they are about. Each of them states in its own list
/// where the id travels, if it does.
class COMMANDPROCESSOR_API ClientTourCommandBase : public PokerCommandTmpl<ClientTourCmdProcessorType> {
 public:
  ~ClientTourCommandBase() override;

  /// 0 for a command that is about no single tournament, and where the id did not travel. The slot right after
  /// process() is binding.
  virtual std::uint32_t tournamentId() const;

 protected:
  using PokerCommandTmpl::PokerCommandTmpl;
  ClientTourCommandBase(const ClientTourCommandBase&) = default;
  ClientTourCommandBase& operator=(const ClientTourCommandBase&) = default;

  std::uint32_t tournamentId_ = 0;
};

}  // namespace poker
