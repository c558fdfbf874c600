#pragma once

#include <CommandProcessor/types/DbRecord.h>
#include <CommandProcessor/types/FieldJson.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

#include <utility>

namespace poker {

template <class T>
std::string DbRecord<T>::toDbText() const {
  return fieldsToJson(static_cast<const T&>(*this), JsonSecrets::kShow);
}

template <class T>
void DbRecord<T>::fromDbText(std::string_view text) {
  T record{};
  try {
    fieldsFromJson(record, text, JsonSecrets::kShow);
  } catch (const FieldValueError& error) {
    throw DbTextError(error.what());
  }
  static_cast<T&>(*this) = std::move(record);
}

}  // namespace poker
