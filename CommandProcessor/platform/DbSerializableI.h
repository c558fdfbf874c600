#pragma once

#include <CommandProcessor/platform/Export.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace poker {

/// A text from a database that is no such record; what() tells where it departs from one.
class COMMANDPROCESSOR_API DbTextError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  DbTextError(const DbTextError&) = default;
  DbTextError& operator=(const DbTextError&) = default;
  ~DbTextError() override;
};

/// A record that can be kept in a text column of a database.
class COMMANDPROCESSOR_API DbSerializableI {
 public:
  virtual ~DbSerializableI();

  /// The record as text: ASCII without line breaks, secrets in clear.
  virtual std::string toDbText() const = 0;

  /// Becomes the record that wrote the text.
  /// @throws DbTextError  when the text is no such record; this record is unchanged then
  virtual void fromDbText(std::string_view text) = 0;

 protected:
  DbSerializableI() = default;
  DbSerializableI(const DbSerializableI&) = default;
  DbSerializableI& operator=(const DbSerializableI&) = default;
};

}  // namespace poker
