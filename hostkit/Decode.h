#pragma once

#include <CommandProcessor/core/Catalogue.h>
#include <hostkit/CommandFactory.h>
#include <hostkit/CommandHandle.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace poker {

/// Which end of the connection this host is.
enum class Side : std::uint8_t { Server, Client };

/// Why received bytes are no command for this host.
struct DecodeError {
  enum class Kind : std::uint8_t {
    None,
    LengthBelowMinimum,  ///< the stream's length slot is below 6
    LengthAboveLimit,    ///< the stream's length slot is above the connection's limit
    NoFrame,             ///< fewer bytes than type code and family
    UnknownPair,         ///< (family, code) names no class
    NotBuilt,            ///< names a class that this build has no code for
    WrongDirection,      ///< a class that only the other side may receive
    NotFromNetwork,      ///< a class whose fields never travel
    NotAllowed,          ///< a class that the session's state does not allow
    Malformed,           ///< the fields cannot be read; the message is the reader's
    TrailingBytes,       ///< bytes are left behind the last field
    BadBatch,            ///< a batch whose inside cannot be used
    OutOfMemory,
  };

  Kind kind = Kind::None;
  std::uint8_t family = 0;
  std::uint8_t code = 0;
  std::string_view className;   ///< empty when the pair names none
  std::uint32_t offset = 0;     ///< where reading stopped, counted from the type code byte
  std::uint32_t remaining = 0;  ///< bytes from there to the end
  std::string message;          ///< never holds text from the peer

  /// One line for a log, for example "ClKeepAlive (2, 128): CommandBuf::readNumber - bufSize == 0, at 2, 3 left".
  std::string toString() const;
};

/// "Malformed" and so on.
std::string_view toText(DecodeError::Kind kind);

/// What a host accepts.
struct DecodePolicy {
  CommandDirection receives;  ///< the direction of the classes that are for this host
  bool rejectTrailing;        ///< whether bytes behind the last field are an error
  bool wipeSecrets;           ///< whether the handles wipe their command before they release it

  /// A server is strict with its clients and keeps no secrets in memory. A client lets a newer server append fields.
  static constexpr DecodePolicy of(Side side) {
    return side == Side::Server ? DecodePolicy{CommandDirection::ClientToServer, true, true}
                                : DecodePolicy{CommandDirection::ServerToClient, false, false};
  }
};

/// A command or the reason why there is none.
class [[nodiscard]] DecodeResult {
 public:
  DecodeResult(CommandHandle<> decoded) noexcept : command(std::move(decoded)) {}
  DecodeResult(DecodeError why) noexcept : error(std::move(why)) {}

  explicit operator bool() const noexcept { return static_cast<bool>(command); }

  CommandHandle<> command;
  DecodeError error;  ///< its kind is None beside a command
};

/// The class that a frame names, if it is one for this host; null with `error` filled otherwise. Reads the first two
/// bytes only.
const CommandClass* resolveCommand(std::span<const std::uint8_t> command, const DecodePolicy& policy,
                                   DecodeError& error);

/// Turns one frame, without its length slot, into a pooled command: the one place where the reader's exceptions are
/// caught and deleted. It throws nothing itself, memory that runs out is an error like another (a frame that asks for
/// more than there is must cost its sender the connection, not the host its life). Allocates nothing on success once
/// the pool and the object's own lists are warm. Any thread.
DecodeResult decodeCommand(std::span<const std::uint8_t> command, const DecodePolicy& policy) noexcept;
/// As above for a frame that resolveCommand() has found to name the class.
DecodeResult decodeCommand(const CommandClass& named, std::span<const std::uint8_t> command,
                           const DecodePolicy& policy) noexcept;

}  // namespace poker
