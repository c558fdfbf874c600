#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvGetExtraMoneyReply.h>

#include <string>

namespace poker {

void SrvGetExtraMoneyReply::init(RequestType type, Reason reason, std::uint32_t rebuys, bool rebuyInAdvance) {
  clearConnections();
  type_ = type;
  reason_ = reason;
  rebuys_ = rebuys;
  rebuyInAdvance_ = rebuyInAdvance;
}

std::string SrvGetExtraMoneyReply::reasonToString(bool hideRebuysLeft) const {
  const bool isRebuy = type_ == RequestType::Rebuy;
  const std::string kind = isRebuy ? "Re-Buy" : "Add-On";
  switch (reason_) {
    case Reason::None:
    case Reason::Failed:
      return "Sorry, your " + kind + " was not completed successfully.";
    case Reason::Done: {
      std::string text = "Your " + kind + " was successfully completed.";
      if (rebuys_ != 0 && isRebuy && !hideRebuysLeft) {
        text += "\nYou have " + std::to_string(rebuys_) + (rebuys_ > 1 ? " Re-Buys left" : " Re-Buy left");
      }
      return text;
    }
    case Reason::TooLate:
      return "\nSorry, you cannot make " + std::string(isRebuy ? "a " : "an ") + kind + " this late in the tournament.";
    case Reason::NoRebuysLeft:
      return "\nSorry, you do not have any Re-Buys left";
    case Reason::NotEnoughMoney:
      return "\nSorry, you do not have enough money.";
    case Reason::BalanceTooHigh:
      return "Sorry, you cannot rebuy until your balance goes below the starting amount.";
    case Reason::NotStarted:
      return "Sorry, you cannot rebuy until the tournaments starts.";
    case Reason::PrizeAwarded:
      return "Sorry, " + kind +
             " is not allowed once a player has been awarded a prize. Contact the HOST for more information.";
  }
  return "";
}

void SrvGetExtraMoneyReply::fields(auto& self, auto&& field) {
  field("rebuys", self.rebuys_);
  field("reason", self.reason_);
  field("type", self.type_);
  field("rebuyInAdvance", self.rebuyInAdvance_);
}

template class Command<SrvGetExtraMoneyReply>;
template class CachedCmdCreator<SrvGetExtraMoneyReply>;

}  // namespace poker
