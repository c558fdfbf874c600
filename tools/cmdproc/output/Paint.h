#pragma once

#include <string>
#include <string_view>

namespace poker::cmdproc {

/// Colours for text on a terminal; leaves text as it is where there are to be none (see wantsColour()).
class Paint {
 public:
  explicit Paint(bool on) : on_(on) {}

  /// Names of classes.
  std::string name(std::string_view text) const { return in("1;36", text); }
  /// What explains something else.
  std::string aside(std::string_view text) const { return in("2", text); }
  /// What the player reads.
  std::string speech(std::string_view text) const { return in("32", text); }
  /// What is wrong.
  std::string alarm(std::string_view text) const { return in("1;31", text); }

 private:
  std::string in(std::string_view code, std::string_view text) const {
    if (!on_) return std::string(text);
    std::string painted = "\033[";
    return painted.append(code).append("m").append(text).append("\033[0m");
  }

  bool on_;
};

}  // namespace poker::cmdproc
