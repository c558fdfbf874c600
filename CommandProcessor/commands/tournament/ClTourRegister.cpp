#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClTourRegister.h>

namespace poker {

void ClTourRegister::init(std::uint32_t tournamentId, const TourMoneyChooser& moneyChoice,
                          const std::string& password) {
  clearConnections();
  tournamentId_ = tournamentId;
  moneyChoice_ = moneyChoice;
  password_ = password;
}

void ClTourRegister::fields(auto& self, auto&& field) {
  field("tournamentId", self.tournamentId_);
  field("password", secret(self.password_));
  field("moneyChoice", self.moneyChoice_);
}

template class Command<ClTourRegister, ClientTourCommandBase>;
template class CachedCmdCreator<ClTourRegister>;

}  // namespace poker
