#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClGetHandHistory.h>

namespace poker {

void ClGetHandHistory::init(bool isGameData, std::uint32_t data, bool isTourRequest) {
  clearConnections();
  isGameData_ = isGameData;
  data_ = data;
  isTourRequest_ = isTourRequest;
}

void ClGetHandHistory::fields(auto& self, auto&& field) {
  field("isGameData", self.isGameData_);
  field("data", self.data_);
  field("isTourRequest", self.isTourRequest_);
}

template class Command<ClGetHandHistory>;
template class CachedCmdCreator<ClGetHandHistory>;

}  // namespace poker
