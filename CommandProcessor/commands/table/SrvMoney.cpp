#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvMoney.h>

namespace poker {

void SrvMoney::init(const RealMoneyType& available, const RealMoneyType& atTable, const RealMoneyType& minimum,
                    const RealMoneyType& maximum) {
  clearConnections();
  available_ = available;
  atTable_ = atTable;
  minimum_ = minimum;
  maximum_ = maximum;
}

void SrvMoney::fields(auto& self, auto&& field) {
  field("available", self.available_);
  field("atTable", self.atTable_);
  field("minimum", self.minimum_);
  field("maximum", self.maximum_);
}

template class Command<SrvMoney>;
template class CachedCmdCreator<SrvMoney>;

}  // namespace poker
