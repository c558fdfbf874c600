#include <CommandProcessor/commands/AllCommands.h>
#include <inspect/PlayerText.h>

#include <algorithm>
#include <array>
#include <typeindex>
#include <typeinfo>
#include <unordered_map>

namespace poker {

namespace {

struct Row : PlayerTextClass {
  const std::type_info* type;
  std::string (*text)(const PokerCommandI& command, JsonSecrets secrets);
};

template <class T>
Row row(std::string_view codeField, std::string (*text)(const PokerCommandI& command, JsonSecrets secrets)) {
  return {{CommandInfo<T>::name, codeField}, &typeid(T), text};
}

/// A class whose text needs nothing but its fields.
template <class T, auto kText>
Row row(std::string_view codeField) {
  return row<T>(codeField, [](const PokerCommandI& command, JsonSecrets) {
    return std::string((static_cast<const T&>(command).*kText)());
  });
}

/// The text holds the new PIN.
std::string logonErrorText(const PokerCommandI& command, JsonSecrets secrets) {
  const auto& error = static_cast<const SrvLogonError&>(command);
  if (secrets == JsonSecrets::kShow || error.getNewPin().empty()) return error.getGUIMessage();
  SrvLogonError& masked = CachedCmdCreator<SrvLogonError>::create();
  masked.init(error.code(), "***");
  std::string text = masked.getGUIMessage();
  masked.release();
  return text;
}

const auto& rows() {
  static const std::array kRows{
      row<OutOfMoney, &OutOfMoney::err>("errorCode"),
      row<SrvErrorDisconnected, &SrvErrorDisconnected::errCodeToVisualString>("errorCode"),
      row<SrvGetExtraMoneyReply>("reason",
                                 [](const PokerCommandI& command, JsonSecrets) {
                                   return static_cast<const SrvGetExtraMoneyReply&>(command).reasonToString(false);
                                 }),
      row<SrvLogonError>("code", logonErrorText),
      row<SrvNewClientVersionAvail, &SrvNewClientVersionAvail::getMessage>("versionType"),
      row<SrvPasswordError, &SrvPasswordError::reasonToStr>("reasonID"),
      row<SrvRegistrationFail, &SrvRegistrationFail::errorMsg>("result"),
      // How long a player must stay away is the host's own setting and does not travel: the default of the text.
      row<SrvSitError>("errorCode",
                       [](const PokerCommandI& command, JsonSecrets) {
                         return static_cast<const SrvSitError&>(command).getErrorMsg(0);
                       }),
      row<SrvTourProtectionError, &SrvTourProtectionError::reasonStr>("reason"),
      row<SrvTourRegisterResult, &SrvTourRegisterResult::reasonStr>("reason"),
      row<SrvTourStartInfo, &SrvTourStartInfo::infoText>("players"),
      row<SrvTourUnregisterResult, &SrvTourUnregisterResult::reasonStr>("reason"),
  };
  return kRows;
}

}  // namespace

std::optional<std::string> playerText(const PokerCommandI& command, JsonSecrets secrets) {
  static const auto byType = [] {
    std::unordered_map<std::type_index, const Row*> places;
    for (const Row& row : rows()) places.emplace(*row.type, &row);
    return places;
  }();
  const auto place = byType.find(typeid(command));
  if (place == byType.end()) return std::nullopt;
  return place->second->text(command, secrets);
}

std::span<const PlayerTextClass> playerTextClasses() {
  static const auto classes = [] {
    std::array<PlayerTextClass, std::tuple_size_v<std::remove_cvref_t<decltype(rows())>>> all;
    std::copy(rows().begin(), rows().end(), all.begin());
    return all;
  }();
  return classes;
}

}  // namespace poker
