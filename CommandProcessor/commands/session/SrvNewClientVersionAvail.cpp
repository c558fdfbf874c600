#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvNewClientVersionAvail.h>

#include <iterator>

namespace poker {

namespace {

// By version type; the last one serves every type beyond.
constexpr const char* kStandardTexts[] = {
    "In our continuous efforts to provide you with the best\n"
    "online poker experience we have upgraded our software.\n"
    "You are now running an old version.  You must close the\n"
    "client and reopen it in order to get the update.\n"
    "If you continue running this version you may experience problems.\n"
    "If you do not upgrade manually the client will be forced\n"
    "to close in five minutes.  Sorry for an inconvenience.\n"
    "For more information about the new version feel free to contact the HOST.",

    "In our continuous efforts to provide you with the best online poker\n"
    "experience we have upgraded our software.  You are now running an old version.\n"
    "You can close the client and reopen it in order to get the update.\n"
    "If you continue running this version you may experience problems.\n"
    "For more information about the new version feel free to contact the HOST.",

    "",
};

// Which texts a style shows; the last row serves every style beyond.
constexpr struct {
  bool standard;
  bool custom;
} kShown[] = {{false, true}, {true, false}, {true, true}, {false, false}};

template <class Table>
const auto& lookUp(const Table& table, std::uint8_t value) {
  return value < std::size(table) ? table[value] : *std::rbegin(table);
}

}  // namespace

void SrvNewClientVersionAvail::init(VersionType type, ShowStyle style, const char* text) {
  clearConnections();
  type_ = type;
  style_ = style;
  text_ = text != nullptr ? text : "";
}

const char* SrvNewClientVersionAvail::type2String() const { return lookUp(kStandardTexts, type_); }

std::string SrvNewClientVersionAvail::getMessage() const {
  const auto& shown = lookUp(kShown, style_);
  std::string message;
  if (shown.standard) message += type2String();
  if (shown.standard && shown.custom) message += "\n\r";
  if (shown.custom) message += text_;
  return message;
}

void SrvNewClientVersionAvail::fields(auto& self, auto&& field) {
  field("versionType", self.type_);
  field("showStyle", self.style_);
  field("customText", self.text_);
}

template class Command<SrvNewClientVersionAvail>;
template class CachedCmdCreator<SrvNewClientVersionAvail>;

}  // namespace poker
