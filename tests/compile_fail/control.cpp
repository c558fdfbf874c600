// What the other files of this folder do right and wrong, done right.
#include <CommandProcessor/commands/session/ClKeepAlive.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>

void control(poker::SerializeCommandBuf& buf) {
  poker::ClKeepAlive& command = poker::CachedCmdCreator<poker::ClKeepAlive>::create();
  command.init(5);
  buf << true << std::uint32_t{1} << "text" << poker::CommandType::ClKeepAlive;
  command.release();
}
