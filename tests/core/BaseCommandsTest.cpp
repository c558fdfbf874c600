// Bases between PokerCommandTmpl and a concrete command, with stand-ins for the classes that derive from them: the
// frame is written once, the base's fields stand in front of the command's own, and the pool is that of the concrete
// class.

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/core/GenericCommands.h>

#include <gtest/gtest.h>

#include <vector>

namespace poker {

class TableUpdate : public BaseCommand<TableUpdate> {
 public:
  explicit TableUpdate(CommandType code) : BaseCommand(code) {}
  TableUpdate(CommandType code, const SeatID& seat, bool notify) : BaseCommand(code), seat_(seat), notify_(notify) {}
  const SeatID& getSeatID() const { return seat_; }
  bool isNotify() const { return notify_; }

 protected:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("seatID", self.seat_);
    field("notify", self.notify_);
  }
  SeatID seat_;
  bool notify_ = false;
};

class BlindPost;
class SeatCount;
class NameAsked;
template <>
struct CommandInfo<BlindPost> : detail::CommandInfoOf<SrvCmdProcessorType, ProcessorFamily::Server, 98> {};
template <>
struct CommandInfo<SeatCount> : detail::CommandInfoOf<SrvCmdProcessorType, ProcessorFamily::Server, 68> {};
template <>
struct CommandInfo<NameAsked> : detail::CommandInfoOf<ClientMiscCmdProcessorType, ProcessorFamily::ClientMisc, 119> {};

namespace detail {
struct NoHandler {
  static void call(auto&, auto&, auto&) {}
};
template <>
struct Handler<BlindPost> : NoHandler {};
template <>
struct Handler<SeatCount> : NoHandler {};
template <>
struct Handler<NameAsked> : NoHandler {};
}  // namespace detail

class BlindPost final : public Command<BlindPost, TableUpdate> {
 public:
  void init(const SeatID& seat, std::uint32_t blind) {
    clearConnections();
    seat_ = seat;
    notify_ = true;
    blind_ = blind;
  }
  std::uint32_t blind() const { return blind_; }

 private:
  friend FieldAccess;
  BlindPost() = default;
  static void fields(auto& self, auto&& field) {
    TableUpdate::fields(self, field);
    field("blind", self.blind_);
  }
  std::uint32_t blind_ = 0;
};

class SeatCount final
    : public Command<SeatCount, NumberCommandEx<PokerCommandTmpl<SrvCmdProcessorType>, std::uint32_t, unsigned char>> {
 public:
  std::uint32_t count() const { return number(); }

 private:
  friend FieldAccess;
  SeatCount() = default;
  static void fields(auto& self, auto&& field) { NumberCommandEx::fields(self, field); }
};

class NameAsked final
    : public Command<NameAsked, StringCommand<PokerCommandTmpl<ClientMiscCmdProcessorType>, MiscCommandType>> {
 public:
  const std::string& name() const { return text(); }

 private:
  friend FieldAccess;
  NameAsked() = default;
  static void fields(auto& self, auto&& field) { field("name", self.text_); }
};

template class BaseCommand<TableUpdate>;
template class Command<BlindPost, TableUpdate>;
template class CachedCmdCreator<BlindPost>;
template class Command<SeatCount, NumberCommandEx<PokerCommandTmpl<SrvCmdProcessorType>, std::uint32_t, unsigned char>>;
template class CachedCmdCreator<SeatCount>;
template class Command<NameAsked, StringCommand<PokerCommandTmpl<ClientMiscCmdProcessorType>, MiscCommandType>>;
template class CachedCmdCreator<NameAsked>;

namespace {

std::vector<int> bytesOf(const PokerCommandI& command) {
  SerializeCommandBuf buf(16);
  command.serialize(buf);
  return {buf.data() + 4, buf.data() + buf.used()};
}

template <class T>
T& readBack(const std::vector<int>& written) {
  const std::vector<std::uint8_t> bytes(written.begin() + 2, written.end());
  DeserializeCommandBuf in(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  T& command = CachedCmdCreator<T>::create();
  command.deserialize(in);
  EXPECT_EQ(in.remaining(), 0u);
  return command;
}

TEST(BaseCommand, WritesItsFieldsBetweenFrameAndOwnFields) {
  BlindPost& command = CachedCmdCreator<BlindPost>::create();
  command.init(4, 0x0201);
  command.setConnID(5);
  EXPECT_EQ(bytesOf(command), (std::vector<int>{98, 1, 4, 1, 0x01, 0x02, 0, 0}));
  BlindPost& read = readBack<BlindPost>(bytesOf(command));
  EXPECT_EQ(read.getSeatID(), SeatID(4));
  EXPECT_TRUE(read.isNotify());
  EXPECT_EQ(read.blind(), 0x0201u);
  auto* copy = dynamic_cast<BlindPost*>(static_cast<PokerCommandI&>(command).clone());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(bytesOf(*copy), bytesOf(command));
  for (BlindPost* each : {&command, &read, copy}) each->release();
}

// The generic bases can be sent as they are, with the code that their creator chose.
TEST(BaseCommand, CarriesTheCodeOfItsCreator) {
  TableUpdate update(CommandType::OutOfMoney, 7, true);
  EXPECT_EQ(bytesOf(update), (std::vector<int>{61, 1, 7, 1}));
  EXPECT_EQ(bytesOf(TableUpdate(CommandType::SrvUserTurn)), (std::vector<int>{58, 1, 100, 0}));
  EXPECT_EQ(update.clone(), nullptr);
  TableUpdate other(CommandType::SrvUserTurn);
  other = update;
  EXPECT_EQ(bytesOf(other), (std::vector<int>{58, 1, 7, 1})) << "assignment keeps the code";
}

TEST(GenericCommands, NarrowTheirNumberAndEmptyANullString) {
  SeatCount& count = CachedCmdCreator<SeatCount>::create();
  count.init(0x109);
  EXPECT_EQ(bytesOf(count), (std::vector<int>{68, 1, 9}));
  count.release();
  NameAsked& name = CachedCmdCreator<NameAsked>::create();
  name.init("ab");
  EXPECT_EQ(bytesOf(name), (std::vector<int>{119, 6, 'a', 'b', 0}));
  name.init(nullptr);
  EXPECT_EQ(bytesOf(name), (std::vector<int>{119, 6, 0}));
  name.release();
}

}  // namespace
}  // namespace poker
