#pragma once

#include <examples/holdem/client/HouseClient.h>
#include <examples/holdem/client/Later.h>
#include <examples/holdem/shared/Options.h>

#include <asio/io_context.hpp>

#include <string>
#include <string_view>

namespace poker::holdem {

/// Somebody who comes to the house to ask for something, and goes when it is answered. SIGINT and SIGTERM end it before.
class Visit : protected HouseEvents {
 public:
  /// @param program  whose trouble is told: "holdem-client lobby"
  Visit(VisitorSettings settings, std::string_view program);

  /// Comes in, and returns when it is over.
  /// @return the exit status
  int run();

 protected:
  /// The player is logged on, for the first time or anew.
  virtual void ask() = 0;

  template <class T, class... Args>
  void send(Args&&... args) {
    house_.send<T>(std::forward<Args>(args)...);
  }
  asio::io_context& context() { return context_; }
  /// The house gets as long for every answer; without one the visit fails.
  void awaitAnswer();
  /// What was asked for is there: from now on the visit ends in order, also when the player is told to go.
  void beAnswered();
  /// Writes to the standard output, at once. When that fails the visit does, and nothing more is written.
  void write(std::string_view text);
  /// Ends the visit as soon as nobody reads the output any more, also while there is nothing to write.
  void leaveWithReader();
  /// Goes.
  void leave();
  /// Tells why, and goes.
  void fail(std::string_view why);

  void onAdminMessage(const SrvAdminMsg& message) override { fail(message.message()); }
  void onNotice(std::string_view text) override { tell(text); }
  void onRefused(std::string_view why) override { fail(why); }
  void onReconnecting(std::chrono::milliseconds) override { onNotice("The connection is lost."); }
  /// A line on the standard error.
  void tell(std::string_view text) const;

 private:
  void onLoggedOn() override;
  void onEnd(PlayerEnd end, std::string_view why) override;

  std::string program_;
  asio::io_context context_{1};
  Later patience_{context_};
  Later look_{context_};  // at the output's reader
  bool isAnswered_ = false;
  bool hasFailed_ = false;
  int status_;
  HouseClient house_;
};

/// What every visitor has to say on the command line, and should know.
void addVisitor(CLI::App& app, VisitorSettings& player, std::string& passwordFile);

}  // namespace poker::holdem
