#include <examples/holdem/server/CutText.h>
#include <examples/holdem/server/bank/Query.h>
#include <examples/holdem/server/members/Members.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace poker::holdem {
namespace {

using namespace std::string_view_literals;

/// What the files begin with: PNG, JPEG, GIF of either version.
constexpr std::string_view kImages[] = {"\x89PNG\r\n\x1A\n"sv, "\xFF\xD8\xFF"sv, "GIF87a"sv, "GIF89a"sv};

bool isImage(std::string_view bytes) {
  return std::any_of(std::begin(kImages), std::end(kImages), [&](auto first) { return bytes.starts_with(first); });
}

COleDateTime dateOf(std::int64_t seconds) { return seconds == 0 ? COleDateTime() : COleDateTime::fromTimeT(seconds); }

/// The whole day, as a client counts days; 0 unless somebody may have been born then. Bits from the wire may be no number.
std::int64_t birthDay(const COleDateTime& told) {
  static const COleDateTime kFirst(1900, 1, 1, 0, 0, 0);
  if (!(told >= kFirst && told <= COleDateTime::GetCurrentTime())) return 0;
  return static_cast<std::int64_t>(std::floor(told.days()));
}

constexpr const char* kProfile =
    "SELECT account.id, name, real_name, city, country, occupation, hobbies, favourite_game, birth_date, opened, "
    "last_visit, about_me, code FROM account LEFT JOIN profile ON profile.account = account.id "
    "LEFT JOIN picture ON picture.account = account.id WHERE ";

MemberProfileInfo profileIn(const Query& row) {
  MemberProfileInfo info;
  info.memberID = static_cast<std::uint32_t>(row.number(0));
  info.screenName = row.text(1);
  info.realName = row.text(2);
  info.city = row.text(3);
  info.country = row.text(4);
  info.occupation = row.text(5);
  info.hobbies = row.text(6);
  info.favouriteGame = row.text(7);
  info.birthDate = COleDateTime(static_cast<double>(row.number(8)));
  info.memberSince = dateOf(row.number(9));
  info.lastVisit = dateOf(row.number(10));
  info.aboutMe = row.text(11);
  info.pictureCode = row.text(12);
  return info;
}

}  // namespace

struct Members::Store {
  using Statement = SQLite::Statement;

  explicit Store(SQLite::Database& own) : database(own) {}

  SQLite::Database& database;

  Statement byName{database, kProfile + std::string("name = ?1")};
  Statement byAccount{database, kProfile + std::string("account.id = ?1")};
  Statement change{database, "REPLACE INTO profile VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)"};
  Statement picture{database,
                    "SELECT name, code, image FROM account LEFT JOIN picture ON account = id WHERE name = ?1"};
  Statement changePicture{database, "REPLACE INTO picture VALUES(?1, ?2, ?3)"};
  Statement removePicture{database, "DELETE FROM picture WHERE account = ?1"};
  Statement visit{database, "UPDATE account SET last_visit = unixepoch() WHERE id = ?1"};
};

Members::Members(Bank& bank) {
  guarded("preparing to keep profiles", [&] { store_ = std::make_unique<Store>(bank.database()); });
}

Members::~Members() = default;

std::optional<MemberProfileInfo> Members::profile(const std::string& name) {
  return guarded("reading a profile", [&]() -> std::optional<MemberProfileInfo> {
    Query row(store_->byName, name);
    if (!row.next()) return std::nullopt;
    return profileIn(row);
  });
}

MemberProfileInfo Members::profileOf(AccountID account) {
  Query row(store_->byAccount, account);
  if (!row.next()) throw BankError(fmt::format("there is no account {}", sqlValue(account)));
  return profileIn(row);
}

MemberProfileInfo Members::change(AccountID account, const MemberProfileInfo& wanted) {
  return guarded("changing a profile", [&] {
    const auto text = [](const std::string& told) { return cutTo(kLongestText, told); };
    Query(store_->change, account, text(wanted.realName), text(wanted.city), text(wanted.country),
          text(wanted.occupation), text(wanted.hobbies), text(wanted.favouriteGame), birthDay(wanted.birthDate),
          cutTo(kLongestAboutMe, wanted.aboutMe))
        .run();
    return profileOf(account);
  });
}

std::optional<Picture> Members::picture(const std::string& name) {
  return guarded("reading a picture", [&]() -> std::optional<Picture> {
    Query row(store_->picture, name);
    if (!row.next()) return std::nullopt;
    return Picture{row.text(0), row.text(1), row.text(2)};
  });
}

std::optional<MemberProfileInfo> Members::changePicture(AccountID account, std::string_view image) {
  if (!image.empty() && (image.size() > kLargestPicture || !isImage(image))) return std::nullopt;
  return guarded("changing a picture", [&] {
    if (image.empty()) {
      Query(store_->removePicture, account).run();
    } else {
      // Clients only compare codes, and each picture's is kept: any hash will do.
      const std::string code = fmt::format("{:016x}", std::hash<std::string_view>()(image));
      Query(store_->changePicture, account, code, SqlBytes{image}).run();
    }
    return profileOf(account);
  });
}

void Members::noteVisit(AccountID account) {
  guarded("noting a visit", [&] { Query(store_->visit, account).run(); });
}

}  // namespace poker::holdem
