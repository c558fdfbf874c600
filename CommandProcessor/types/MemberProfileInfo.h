#pragma once

#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/wire/Record.h>

#include <cstdint>
#include <string>

namespace poker {

/// What a player tells the others of itself. The seven texts in the middle hold at most 50 characters each: longer ones
/// are cut when they are written (fitsOnWire() tells).
///
///     memberID (32 bits), seven strings, three date-times, two strings
struct COMMANDPROCESSOR_API MemberProfileInfo : Record<MemberProfileInfo> {
  std::uint32_t memberID = 0;
  std::string screenName;
  std::string realName;
  std::string city;
  std::string country;
  std::string occupation;
  std::string hobbies;
  std::string favouriteGame;
  COleDateTime birthDate;
  COleDateTime memberSince;
  COleDateTime lastVisit;
  std::string aboutMe;      ///< of any length
  std::string pictureCode;  ///< of the picture as it is now (SrvSendUserPic); empty when there is none

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("memberID", self.memberID);
    field("screenName", wire::text<50>(self.screenName));
    field("realName", wire::text<50>(self.realName));
    field("city", wire::text<50>(self.city));
    field("country", wire::text<50>(self.country));
    field("occupation", wire::text<50>(self.occupation));
    field("hobbies", wire::text<50>(self.hobbies));
    field("favouriteGame", wire::text<50>(self.favouriteGame));
    field("birthDate", self.birthDate);
    field("memberSince", self.memberSince);
    field("lastVisit", self.lastVisit);
    field("aboutMe", self.aboutMe);
    field("pictureCode", self.pictureCode);
  }
};

}  // namespace poker
