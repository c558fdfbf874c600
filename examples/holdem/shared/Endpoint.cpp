#include <examples/holdem/shared/Endpoint.h>

#include <charconv>

namespace poker::holdem {

std::optional<Endpoint> Endpoint::parse(std::string_view text) {
  const std::size_t colon = text.rfind(':');
  if (colon == std::string_view::npos) return std::nullopt;
  std::string_view host = text.substr(0, colon);
  const std::string_view port = text.substr(colon + 1);
  const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  if (bracketed) host = host.substr(1, host.size() - 2);
  if (host.empty() || (!bracketed && host.find(':') != std::string_view::npos)) return std::nullopt;

  Endpoint endpoint;
  endpoint.host = host;
  const auto [end, failure] = std::from_chars(port.data(), port.data() + port.size(), endpoint.port);
  if (failure != std::errc() || end != port.data() + port.size()) return std::nullopt;
  return endpoint;
}

std::string Endpoint::toString() const {
  const bool bracketed = host.find(':') != std::string::npos;
  return (bracketed ? '[' + host + ']' : host) + ':' + std::to_string(port);
}

}  // namespace poker::holdem
