#pragma once

#include <CommandProcessor/wire/Record.h>

#include <cstdint>
#include <string>
#include <vector>

/// What logon and registration have in common.
namespace poker::CommonTypes {

/// How a logon ended. Other values are carried as they are.
enum LogonRetCodes : std::uint8_t {
  LogonOk = 0,
  BadUserOrPassword = 1,
  AccountBanned = 2,
  AccountLocked = 3,
  OtherAccountOnComputer = 4,  ///< one account a computer: another one is open there
  AlreadyLoggedIn = 5,
  ChooseScreenName = 6,  ///< the user has none yet; the client answers with ClMyNewScreenName
  LogonRefused = 7,      ///< for no reason that the user is told
  PinChanged = 8,        ///< comes with the new PIN
};

/// How a registration ended. Other values are carried as they are.
enum NewAccountReg : std::uint8_t {
  AccountCreated = 0,
  HardwareConflict = 1,  ///< one account a computer: this one has an account
  RegistrationFailed = 2,
  UserNameTaken = 3,
  UnknownReferral = 4,
  CountryNotAllowed = 5,
};

/// What a client tells of its machine at logon and when it chooses a screen name, so that the server can hold to one
/// account a computer.
///
///     present (bool); when true: count (32 bits), that many strings; the same again; a string
struct COMMANDPROCESSOR_API HardwareInfo : Record<HardwareInfo> {
  HardwareInfo() = default;
  HardwareInfo(std::vector<std::string> macAddressesOfMachine, std::vector<std::string> diskSerialsOfMachine,
               std::string idOfMachine);

  /// Nothing is known of the machine; one byte on the wire.
  bool isEmpty() const { return macAddresses.empty() && diskSerials.empty() && machineID.empty(); }

  friend bool operator==(const HardwareInfo& a, const HardwareInfo& b) {
    return a.macAddresses == b.macAddresses && a.diskSerials == b.diskSerials && a.machineID == b.machineID;
  }

  std::vector<std::string> macAddresses;  ///< one a network adapter
  std::vector<std::string> diskSerials;   ///< one a fixed disk
  std::string machineID;                  ///< the operating system's own id of the installation

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field.present("present", !self.isEmpty(), [&](auto& machine) {
      machine("macAddresses", wire::list<std::uint32_t>(self.macAddresses));
      machine("diskSerials", wire::list<std::uint32_t>(self.diskSerials));
      machine("machineID", self.machineID);
    });
  }
};

/// The registration form, as the user filled it in: nothing is checked here. Its password is a secret.
struct COMMANDPROCESSOR_API NewAccountInfo : Record<NewAccountInfo> {
  std::string userName;
  std::string password;
  std::string firstName;
  std::string lastName;
  std::string email;
  std::string address;
  std::string city;
  std::string state;
  std::string zipCode;
  std::string country;
  bool wantsNews = false;  ///< agrees to be sent news and offers by e-mail
  std::string phone;
  std::string birthDate;  ///< YYYY-MM-DD
  std::string referral;   ///< user name of the player who brought this one; empty when nobody did
  std::string bonusCode;
  std::uint32_t affiliateID = 0;  ///< of the site that the client was downloaded from; 0 when none
  HardwareInfo hardware;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("userName", self.userName);
    field("password", wire::secret(self.password));
    field("firstName", self.firstName);
    field("lastName", self.lastName);
    field("email", self.email);
    field("address", self.address);
    field("city", self.city);
    field("state", self.state);
    field("zipCode", self.zipCode);
    field("country", self.country);
    field("wantsNews", self.wantsNews);
    field("phone", self.phone);
    field("birthDate", self.birthDate);
    field("referral", self.referral);
    field("bonusCode", self.bonusCode);
    field("affiliateID", self.affiliateID);
    field("hardware", self.hardware);
  }
};

}  // namespace poker::CommonTypes
