#pragma once

#include <CommandProcessor/core/Catalogue.h>
#include <CommandProcessor/core/ProcessorFamily.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace poker {

/// How far a session has come. Its host moves it on (TcpSession::setState); Closing is the session's own.
enum class SessionState : std::uint8_t {
  Connected,    ///< the transport stands; the hand-shake is awaited
  ShakenHands,  ///< the server has taken the connection; the logon is awaited
  LoggedOn,
  Seated,   ///< logged on and sitting at one table at least
  Closing,  ///< nothing is received any more; what is queued still goes out
};

/// "Connected" and so on.
std::string_view toText(SessionState state);

/// Which classes a session may receive in which state. What was not allowed is denied.
///
///     auto allowed = AllowedCommands::forServer();
///     allowed.allow<ClScriptSetDealer>(SessionState::Seated);       // a test server
///     allowed.deny(SessionState::LoggedOn, "ClMiscSetupAccount");
///
/// Look-ups take constant time; any thread may do them once the table is set up.
class AllowedCommands {
 public:
  /// Denies everything.
  constexpr AllowedCommands() = default;

  /// What clients may send. Connected: the hand-shake and bye. ShakenHands: keep-alive, ping, bye, secure-channel data,
  /// logon, new account, forgotten password. LoggedOn: all but those of the hand-shake, logon and registration, and
  /// what only a seated player does. Seated: these too. Never: the test script's ClScriptSetDealer.
  static AllowedCommands forServer();
  /// What servers may send. Connected: the answers to the hand-shake, the notices of the connection. From then on
  /// everything.
  static AllowedCommands forClient();

  constexpr void set(SessionState state, ProcessorFamily family, std::uint8_t code, bool allowed) {
    const std::size_t bit = static_cast<std::size_t>(family) * 256 + code;
    if (state >= SessionState::Closing || bit >= kBits) return;
    const std::uint64_t mask = std::uint64_t{1} << (bit % 64);
    std::uint64_t& word = bits_[static_cast<std::size_t>(state)][bit / 64];
    word = allowed ? word | mask : word & ~mask;
  }
  constexpr bool allows(SessionState state, ProcessorFamily family, std::uint8_t code) const {
    const std::size_t bit = static_cast<std::size_t>(family) * 256 + code;
    if (state >= SessionState::Closing || bit >= kBits) return false;
    return (bits_[static_cast<std::size_t>(state)][bit / 64] >> (bit % 64) & 1) != 0;
  }

  template <class T>
  constexpr void allow(SessionState state) {
    set(state, CommandInfo<T>::family, CommandInfo<T>::code, true);
  }
  template <class T>
  constexpr void deny(SessionState state) {
    set(state, CommandInfo<T>::family, CommandInfo<T>::code, false);
  }
  /// By the class's exact name.
  /// @throws std::invalid_argument  when no class is called so
  void allow(SessionState state, std::string_view name);
  void deny(SessionState state, std::string_view name);

 private:
  static constexpr std::size_t kBits = 7 * 256;

  std::array<std::array<std::uint64_t, kBits / 64>, static_cast<std::size_t>(SessionState::Closing)> bits_{};
};

}  // namespace poker
