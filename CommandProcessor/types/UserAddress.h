#pragma once

#include <CommandProcessor/wire/Record.h>

#include <string>

namespace poker {

/// Where a user lives, as the user wrote it: nothing is checked here.
///
///     six strings
struct COMMANDPROCESSOR_API UserAddress : Record<UserAddress> {
  std::string address;  ///< street and house number
  std::string city;
  std::string state;
  std::string zipCode;
  std::string country;
  std::string phone;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("address", self.address);
    field("city", self.city);
    field("state", self.state);
    field("zipCode", self.zipCode);
    field("country", self.country);
    field("phone", self.phone);
  }
};

}  // namespace poker
