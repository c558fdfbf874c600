#pragma once

#include <CommandProcessor/wire/Record.h>

#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace poker {

/// What the two records of strings share: strings in order, with the operations of std::vector.
class Strings {
 public:
  using value_type = std::string;
  using iterator = std::vector<std::string>::iterator;
  using const_iterator = std::vector<std::string>::const_iterator;

  iterator begin() { return items_.begin(); }
  iterator end() { return items_.end(); }
  const_iterator begin() const { return items_.begin(); }
  const_iterator end() const { return items_.end(); }
  std::string& operator[](std::size_t i) { return items_[i]; }
  const std::string& operator[](std::size_t i) const { return items_[i]; }
  std::size_t size() const { return items_.size(); }
  bool empty() const { return items_.empty(); }
  void clear() { items_.clear(); }
  void reserve(std::size_t size) { items_.reserve(size); }
  void resize(std::size_t size) { items_.resize(size); }
  void push_back(std::string item) { items_.push_back(std::move(item)); }

  friend bool operator==(const Strings& a, const Strings& b) { return a.items_ == b.items_; }

 protected:
  Strings() = default;
  Strings(std::initializer_list<std::string> items) : items_(items) {}

  std::vector<std::string> items_;
};

/// Texts in order, as a hand history carries them.
///
///     count (32 bits), then the strings
class COMMANDPROCESSOR_API StringVector : public Strings, public Record<StringVector> {
 public:
  StringVector() = default;
  StringVector(std::initializer_list<std::string> items) : Strings(items) {}

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("items", wire::list<std::uint32_t>(self.items_)); }
};

}  // namespace poker
