#include <CommandProcessor/commands/ClMiscUserBased.h>
#include <CommandProcessor/core/FieldsImpl.h>

namespace poker {

ClMiscUserBased::ClMiscUserBased(MiscCommandType code) : BaseCommand(code) {}

ClMiscUserBased::~ClMiscUserBased() = default;

void ClMiscUserBased::init(std::int32_t userID) {
  clearConnections();
  userID_ = userID;
}

template class BaseCommand<ClMiscUserBased, PokerCommandTmpl<ClientMiscCmdProcessorType>>;

}  // namespace poker
