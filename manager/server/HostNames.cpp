#include "server/HostNames.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>

#include "broker/HostName.h"
#include "schema/Caseless.h"
#include "server/ClientAddress.h"

namespace ZebManager {
namespace {

std::string plain(std::string_view name) {
  if (name.ends_with('.')) name.remove_suffix(1);
  std::string folded(name);
  std::transform(folded.begin(), folded.end(), folded.begin(), foldCase);
  return folded;
}

/// The names of a line of the file of hosts, behind its address.
std::vector<std::string> namesIn(const std::string& line) {
  std::istringstream words(line.substr(0, line.find('#')));
  std::vector<std::string> names(std::istream_iterator<std::string>(words), {});
  if (!names.empty()) names.erase(names.begin());
  std::transform(names.begin(), names.end(), names.begin(), plain);
  return names;
}

/// Without the port; empty when it is none that there can be.
std::string_view withoutPort(std::string_view host) {
  const bool bracketed = host.starts_with('[');
  const std::size_t end = bracketed ? host.find(']') : host.find(':');
  if (bracketed && end == std::string_view::npos) return {};
  const std::string_view rest = host.substr(std::min(host.size(), end + (bracketed ? 1 : 0)));
  const bool isPort =
      rest.empty() || (rest[0] == ':' && rest.find_first_not_of("0123456789", 1) == rest.npos);
  return isPort ? host.substr(bracketed ? 1 : 0, bracketed ? end - 1 : end) : std::string_view();
}

std::optional<ClientAddress> literal(std::string_view text) {
  const std::string address(text.substr(0, text.find('%')));
  sockaddr_in narrow{};
  narrow.sin_family = AF_INET;
  if (inet_pton(AF_INET, address.c_str(), &narrow.sin_addr) == 1) {
    return ClientAddress(reinterpret_cast<const sockaddr&>(narrow));
  }
  sockaddr_in6 wide{};
  wide.sin6_family = AF_INET6;
  if (inet_pton(AF_INET6, address.c_str(), &wide.sin6_addr) == 1) {
    return ClientAddress(reinterpret_cast<const sockaddr&>(wide));
  }
  return std::nullopt;
}

}  // namespace

HostNames::HostNames(const std::vector<std::string>& more, const std::string& hostsFile)
    : _names({"localhost", plain(hostName())}) {
  const std::string own = plain(hostName());
  std::ifstream hosts(hostsFile);
  for (std::string line; std::getline(hosts, line);) {
    const auto names = namesIn(line);
    if (std::find(names.begin(), names.end(), own) != names.end()) _names.insert(names.begin(), names.end());
  }
  for (const std::string& name : more) _names.insert(plain(name));
}

bool HostNames::mean(std::string_view host, const std::string& address) const {
  const std::string_view name = withoutPort(host);
  if (_names.contains(plain(name))) return true;
  const auto own = literal(name);
  return own && (own->loopback || own->host == address);
}

}  // namespace ZebManager
