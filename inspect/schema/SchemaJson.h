#pragma once

#include <inspect/schema/Schema.h>

#include <string>

namespace poker {

/// The class and its fields as one JSON object on one line, without the line break:
///
///     {"command":"ClKeepAlive","family":2,"code":128,"direction":"client to server","handler":"onClKeepAlive",
///      "fields":[{"name":"sequenceNumber","type":"u32"}]}
std::string schemaJson(const CommandSchema& schema);

/// What the format calls the field's type: "u32", "card", "date-time-status", "list", or the record's own name.
std::string typeText(const SchemaField& field);

}  // namespace poker
