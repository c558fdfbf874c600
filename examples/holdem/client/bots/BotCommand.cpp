#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/bots/Bot.h>

#include <memory>

namespace poker::holdem {

namespace {

struct Options : PlayerOptions {
  BotSettings bot;
  std::string style = "tight";
};

int run(Options& options) {
  BotSettings& settings = options.bot;
  settings.player = options.player;
  settings.player.password = passwordFrom(options.passwordFile);
  settings.player.sitsDown = true;
  settings.player.program = "holdem-client bot";
  settings.player.registersForTour = true;
  settings.style = *styleFromText(options.style);
  asio::io_context context(1);
  int status = kNotAsExpected;
  Bot bot(context, settings, [&](PlayerEnd end, std::string_view why) {
    status = statusOf(end, why, "holdem-client bot: " + settings.player.name);
    context.stop();
  });
  const StopSignals signals(
      context, [&] { bot.leave(); }, [&] { bot.client().bye(); });
  bot.start();
  context.run();
  return status;
}

}  // namespace

Subcommand addBot(CLI::App& parent) {
  const auto options = std::make_shared<Options>();
  options->player.name = "Bot";
  CLI::App& app = *parent.add_subcommand("bot", "Plays by itself, until the server ends or the chips are gone.");
  addPlayer(app, *options);
  addSeat(app, options->player);
  addTournament(app, options->player);
  BotSettings& bot = options->bot;
  app.add_option("--style", options->style, "tight, loose or random")
      ->check(CLI::IsMember({"tight", "loose", "random"}))
      ->capture_default_str()
      ->type_name("STYLE");
  app.add_option("--seed", bot.seed, "bots of the same style differ by it")->capture_default_str()->type_name("N");
  addSeconds(app, "--pause", bot.pause, "how long to think about a turn");
  addMoney(app, "--rebuy", bot.rebuy, "what to bring when the stack is gone; otherwise the buy-in");
  app.add_option("--rebuys", bot.rebuys, "how often at most, also in a tournament")
      ->capture_default_str()
      ->type_name("N");
  app.add_flag("--chat", bot.chats, "say something now and then");
  app.add_flag("--advance", bot.usesAdvance, "when tight: fold junk before the turn");
  app.add_flag("--wait", options->player.waits, "queue when the table is full, and take the seat that becomes free");
  app.add_option("--ready-file", bot.readyFile, "written when it has a seat, or is registered")->type_name("FILE");
  app.add_flag("--add-on", bot.addsOn, "take a tournament's add-on");
  app.add_flag("--post", bot.postsBlinds, "post a blind rather than wait for the big blind");
  return {&app, [options] { return run(*options); }};
}

}  // namespace poker::holdem
