#include <CommandProcessor/commands/table/OrEmpty.h>
#include <CommandProcessor/commands/table/SrvMsgCommand.h>
#include <CommandProcessor/core/FieldsImpl.h>

#include <iterator>

namespace poker {

namespace {

// By number.
constexpr const char* kStandardMsgs[] = {
    "",
    "Waiting for more players.",
    "This table closes after the current hand.",
    "The server restarts after the current hand.",
};

}  // namespace

SrvMsgCommand::SrvMsgCommand(CommandType type, unsigned msg)
    : BaseCommand(type), msg_(msg < std::size(kStandardMsgs) ? kStandardMsgs[msg] : "") {}

void SrvMsgCommand::init(const char* msg) {
  clearConnections();
  msg_ = orEmpty(msg);
}

template class BaseCommand<SrvMsgCommand>;

}  // namespace poker
