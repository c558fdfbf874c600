#pragma once

#include <inspect/schema/Schema.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace poker::test {

/// How values follow each other from element to element of a list or map, its keys among them.
enum class Order : std::uint8_t { Ascending, Descending, Random, Equal };

/// How much is in a message.
struct SchemaFill {
  std::size_t elements = 3;  ///< of each list and map, as far as its count can tell; of those inside others two
  std::size_t text = 8;      ///< characters of a string beyond those that tell it from others, and raw bytes
  Order order = Order::Ascending;
};

/// A message as it travels, type code and family first, made from the schema alone: every part is there, and its class
/// reads it whole. No sender needs to keep to an order, and here none does.
std::vector<std::uint8_t> schemaBytes(const CommandSchema& schema, const SchemaFill& fill = {});

}  // namespace poker::test
