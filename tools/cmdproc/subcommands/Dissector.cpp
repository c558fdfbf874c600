#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/dissector/Dissector.h>
#include <tools/cmdproc/output/Output.h>

namespace poker::cmdproc {

void addDissector(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand("dissector", "a plugin that shows commands in Wireshark");
  subcommand.footer(
      "Writes a plugin in Lua to standard output:\n"
      "  cmdproc dissector > ~/.local/lib/wireshark/plugins/cmdproc.lua\n"
      "  wireshark -o cmdproc.tcp_ports:4000 capture.pcap\n"
      "Its first lines say what to filter by. Secrets are *** in the tree, but everybody can read them in the "
      "packets'\n"
      "bytes.");
  subcommand.callback([&action] {
    action = [] {
      Output output;
      output.write(dissectorText());
      output.flush();
      return ExitStatus::Clean;
    };
  });
}

}  // namespace poker::cmdproc
