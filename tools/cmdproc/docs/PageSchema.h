#pragma once

#include <inspect/schema/Schema.h>

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace poker::cmdproc {

/// A record type that fields have. Its name alone does not always tell it: two of one name could differ.
struct RecordType {
  std::string key;   ///< the name, or "name (2)" for another record that is called the same
  std::string name;  ///< what fields call it
  const SchemaField* sample;
  std::vector<std::string> usedBy;  ///< command classes, each once
};

/// Record types of all classes, each once, by their names; packed ones and date-time-status are the format's own.
class RecordTypes {
 public:
  RecordTypes();

  const std::vector<RecordType>& all() const { return types_; }
  /// @param field  a record of a class
  const std::string& keyOf(const SchemaField& field) const;

 private:
  void collect(const SchemaField& field, std::string_view command);

  std::vector<RecordType> types_;
};

/// Whether a record is described once, under its own name, and not where it stands.
bool hasRecordType(const SchemaField& field);

/// All that the page needs to read bytes as walkCommand does: classes, record types, the widths of numbers, what the
/// bytes of cards mean, the texts that a player reads for a code.
nlohmann::ordered_json pageSchema(const RecordTypes& types);

/// "Queen of Hearts, shown": a card's byte in words.
std::string cardText(std::uint8_t byte);

}  // namespace poker::cmdproc
