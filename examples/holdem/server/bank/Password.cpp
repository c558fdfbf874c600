#include <examples/holdem/server/bank/Password.h>

#include <crypt.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <memory>
#include <system_error>

namespace poker::holdem {
namespace {

// libcrypt's work space holds the password. It has 32 KB, too much for a stack that may be deep already.
struct WipeAndDelete {
  void operator()(crypt_data* data) const {
    explicit_bzero(data, sizeof *data);
    delete data;
  }
};

std::string crypt(std::string_view password, const char* setting) {
  const std::unique_ptr<crypt_data, WipeAndDelete> data(new crypt_data{});
  if (password.size() >= sizeof data->input) throw std::system_error(ERANGE, std::generic_category(), "password");
  password.copy(data->input, password.size());
  const char* hash = crypt_rn(data->input, setting, data.get(), sizeof *data);
  if (hash == nullptr) throw std::system_error(errno, std::generic_category(), "hash of a password");
  return hash;
}

}  // namespace

bool isAcceptablePassword(std::string_view password) {
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; };
  return password.size() >= 4 && password.size() <= 64 && std::none_of(password.begin(), password.end(), isControl);
}

std::string hashPassword(std::string_view password, unsigned cost) {
  // libcrypt takes 0 for its own choice, which may change from system to system.
  char salt[CRYPT_GENSALT_OUTPUT_SIZE];
  if (cost == 0) errno = EINVAL;
  if (cost == 0 || crypt_gensalt_rn("$y$", cost, nullptr, 0, salt, sizeof salt) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "salt of a password");
  }
  return crypt(password, salt);
}

bool passwordMatches(std::string_view password, const std::string& hash) {
  const std::string own = crypt(password, hash.c_str());
  if (own.size() != hash.size()) return false;
  volatile unsigned difference = 0;  // volatile: every byte is compared, wherever the first difference is
  for (std::size_t i = 0; i < own.size(); ++i) {
    difference = difference | static_cast<unsigned>(own[i] ^ hash[i]);
  }
  return difference == 0;
}

}  // namespace poker::holdem
