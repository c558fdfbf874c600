#pragma once

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/core/ConnectionsSet.h>
#include <CommandProcessor/platform/Export.h>

#include <cstddef>
#include <cstdint>

namespace poker {

class DeserializeCommandBuf;
class SerializeCommandBuf;

/// A message between client and server: the root of all command classes.
///
/// A command belongs to one thread at a time, from the pool or queue it is taken from until release(). The virtual
/// operations stand here in the order of their slots, which is binding; `process` (PokerCommandTmpl) comes last.
class COMMANDPROCESSOR_API PokerCommandI {
 public:
  /// What a living command carries in its marker.
  static constexpr std::uint32_t kValidMarker = 0x0FFCE0FF;
#ifdef CP_CHECKING
  /// What the marker of an object is that lies idle in its pool; in checking builds alone.
  static constexpr std::uint32_t kIdleMarker = 0x1D1E1D1E;
#endif

  virtual ~PokerCommandI() = 0;

  /// A copy from the class's own pool, connection ids included, that the caller must release; null for a class without
  /// a pool.
  virtual PokerCommandI* clone();
  /// Hands this command to the dispatcher's operation for its family.
  /// @return what the dispatcher answers
  /// @throws DisptachException  when that family has no processor
  virtual bool dispatch(CmdDispatcherI& dispatcher) = 0;
  /// Writes the frame (type code byte, family byte) and the fields.
  virtual void serialize(SerializeCommandBuf& buf) const = 0;
  /// Reads the fields; the frame has been read by whoever chose this class. Nothing of the object's earlier use stays.
  /// @throws CommandDeserializeException*  when the bytes run out; the object is then half filled
  virtual void deserialize(DeserializeCommandBuf& buf) = 0;

  /// The smallest connection id; the invalid id when there is none.
  virtual const ConnectionID& getConnID() const = 0;
  /// Adds an id to the set. Despite its name it replaces nothing: call clearConnections() for that.
  virtual void setConnID(const ConnectionID& id) = 0;
  virtual void clearConnections() = 0;
  virtual ConnectionsSet& getConnections() = 0;
  virtual void addConnections(const ConnectionsSet& ids) = 0;
  virtual void removeConnection(const ConnectionID& id) = 0;

  /// Whether the command may travel inside a compressed batch.
  virtual bool canCompress();
  /// A hook for the transport: whether the connection ends after this command.
  virtual bool isFinalCommand() const = 0;
  /// The type code, unique within the family.
  virtual std::uint32_t getTypeCode() const = 0;
  /// Gives the object back to its pool; does nothing for a class without one. The object must not be used afterwards.
  virtual void release();

  const ConnectionsSet& connections() const { return const_cast<PokerCommandI*>(this)->getConnections(); }

  /// For code that holds command pointers: faults at once, by a division by zero, when this is no living command.
  /// @return the marker
  int checkValidAndThrow();

#ifdef CP_CHECKING
  /// Says on stderr what was done to which class and aborts when the object lies idle in its pool or is dead.
  /// @param operation  as in "serialize()"
  void requireInUse(const char* operation) const;
  /// For pools: the object, of so many bytes, becomes idle. Aborts when it is idle already. Under the address sanitizer
  /// nobody may touch its fields from here on.
  void enterPool(std::size_t size);
  /// For pools: the object is in use again.
  void leavePool(std::size_t size);
#else
  // Checking builds (CP_CHECKING) find out here who uses or releases an object that was released before.
  void requireInUse(const char*) const noexcept {}
  void enterPool(std::size_t) noexcept {}
  void leavePool(std::size_t) noexcept {}
#endif

 protected:
  PokerCommandI() noexcept { mark(kValidMarker); }
  PokerCommandI(const PokerCommandI&) noexcept { mark(kValidMarker); }
  PokerCommandI& operator=(const PokerCommandI& other) noexcept {
    mark(other.marker());
    return *this;
  }

 private:
  // Volatile: the compiler may not drop the destructor's store nor believe a marker it saw before.
  void mark(std::uint32_t value) noexcept { *const_cast<volatile std::uint32_t*>(&marker_) = value; }
  std::uint32_t marker() const noexcept { return *const_cast<const volatile std::uint32_t*>(&marker_); }

  std::uint32_t marker_;
};

}  // namespace poker
