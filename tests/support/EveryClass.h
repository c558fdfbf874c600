#pragma once

#include <hostkit/CommandFactory.h>
#include <inspect/CommandFields.h>
#include <inspect/schema/Schema.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <tests/support/WireBytes.h>

namespace poker::test {

/// What the tests need of a class, beside what hosts and the inspector know of it.
struct ClassUnderTest {
  const CommandClass* host;
  const CommandFields* fields;
  const CommandSchema* schema;
  void (*clearPool)();
  std::uint32_t (*idle)();
  void (*initEmpty)(PokerCommandI&);  ///< with arguments that are zero or empty
  void (*initFull)(PokerCommandI&);   ///< with texts that are on the heap

  std::string_view name() const { return host->name(); }
  /// Whether a received pair names it: two classes stay inside the process.
  bool isReceived() const { return host->travels && CommandFactory::find(host->family(), host->code()) == host; }
};

/// All classes, in the order of the catalogue.
const std::vector<ClassUnderTest>& everyClass();

/// Messages of a class, type code and family first: of a new object, its golden lines, and one with long lists and texts.
std::vector<Bytes> messagesOf(const ClassUnderTest& its);

/// The fields as they are held, secrets too. (Of the object and not of its bytes: those of SrvPing change with the clock.)
std::string shown(const PokerCommandI& command);

}  // namespace poker::test
