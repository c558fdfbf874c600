#pragma once

#include <CommandProcessor/core/PokerCommandTmpl.h>
#include <CommandProcessor/wire/FieldWords.h>

#include <string>

namespace poker {

// Bases that carry one number or one string next to the type code. The class that derives from one of them gives the
// value its name; `fields` here is the list of those that need no better one.

/// A command with one 32-bit number.
template <class Base>
class COMMANDPROCESSOR_API NumberCommand : public Base {
 public:
  void init(std::uint32_t number) {
    this->clearConnections();
    number_ = number;
  }

 protected:
  using Base::Base;
  std::uint32_t number() const { return number_; }
  static void fields(auto& self, auto&& field) { field("number", self.number_); }

  std::uint32_t number_ = 0;
};

/// A command with one number that is held as a Held and travels as a Wire.
template <class Base, class Held, class Wire>
class COMMANDPROCESSOR_API NumberCommandEx : public Base {
 public:
  void init(Held number) {
    this->clearConnections();
    number_ = number;
  }

 protected:
  using Base::Base;
  Held number() const { return number_; }
  static void fields(auto& self, auto&& field) { field("number", wire::as<Wire>(self.number_)); }

  Held number_ = {};
};

/// A command with one string, behind the fields that the base may have of its own. A null pointer given to init() is an
/// empty string.
template <class Base, class TypeCode>
class COMMANDPROCESSOR_API StringCommand : public Base {
 public:
  void init(const char* text) {
    Base::init();
    text_ = text != nullptr ? text : "";
  }

 protected:
  explicit StringCommand(TypeCode code) : Base(code) {}
  const std::string& text() const { return text_; }
  static void fields(auto& self, auto&& field) {
    if constexpr (requires { Base::fields(self, field); }) Base::fields(self, field);
    field("text", self.text_);
  }

  std::string text_;
};

}  // namespace poker
