#pragma once

#include <CommandProcessor/types/DbRecord.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/wire/FlatMultimap.h>

#include <cstdint>

namespace poker {

/// What a prize is. Travels as one byte; values without a name are carried as they are.
enum class PrizeType : std::uint8_t {
  Cash = 0,
  TourMoney = 1,
  Ticket = 2,   ///< to another tournament; the amount is its worth
  Percent = 3,  ///< a share of the prize fund: an amount of 12.50 is 12.5 percent
};

/// One prize of one place; a place may have several.
///
///     place (32 bits, signed); type (byte); amount (money)
struct COMMANDPROCESSOR_API PrizeSchemeInfoRow : DbRecord<PrizeSchemeInfoRow> {
  std::int32_t place = 0;  ///< the winner's is 1
  PrizeType type = PrizeType::Cash;
  RealMoneyType amount;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("place", self.place);
    field("type", self.type);
    field("amount", self.amount);
  }
};

/// Who wins what in a tournament: prizes by place, those of one place in the order in which they were added.
///
///     final (bool); count (32 bits, signed) and the prizes, none when it is below 1
class COMMANDPROCESSOR_API PrizeSchemeInfoMap : public DbRecord<PrizeSchemeInfoMap> {
 public:
  using Rows = FlatMultimap<std::int32_t, PrizeSchemeInfoRow>;

  void add(const PrizeSchemeInfoRow& row) { rows_.insert({row.place, row}); }
  /// Takes all prizes away; isFinal() stays.
  void clear() { rows_.clear(); }
  /// By place, ascending.
  const Rows& rows() const { return rows_; }

  /// Registration is over, so that the prizes do not change any more.
  bool isFinal() const { return isFinal_; }
  void setFinal(bool isFinal) { isFinal_ = isFinal; }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("isFinal", self.isFinal_);
    field("rows", wire::rows<wire::BelowOneIsNone>(self.rows_, &PrizeSchemeInfoRow::place));
  }

  Rows rows_;
  bool isFinal_ = false;
};

}  // namespace poker
