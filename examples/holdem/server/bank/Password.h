#pragma once

#include <string>
#include <string_view>

namespace poker::holdem {

/// 10 ms and 8 MB for each password: short enough for a thread that also deals cards, long for who guesses.
inline constexpr unsigned kPasswordCost = 4;

/// 4 to 64 bytes, none a control character; any encoding.
bool isAcceptablePassword(std::string_view password);

/// What is stored instead of the password: a salted yescrypt hash, as crypt(5) writes it. Every call draws a new salt.
/// @param password  an acceptable one
/// @param cost  1 to 11; one more doubles time and memory
/// @throws std::system_error  the cost is out of range, or the system has no randomness or no memory
std::string hashPassword(std::string_view password, unsigned cost);

/// Takes as long for a wrong password as for the right one.
/// @param password  an acceptable one
/// @param hash  from hashPassword(), at any cost
/// @throws std::system_error  the hash is none, or the system has no memory
bool passwordMatches(std::string_view password, const std::string& hash);

}  // namespace poker::holdem
