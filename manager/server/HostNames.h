// What this machine is called.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ZebManager {

/// A page of anybody's may have its name lead to this machine, and a browser then lets it read what is
/// answered; it says that name in the header Host. Safe from any thread.
class HostNames {
 public:
  /// "localhost", this machine's own name, what the file of hosts has beside it, and `more`.
  explicit HostNames(const std::vector<std::string>& more, const std::string& hostsFile = "/etc/hosts");

  /// Whether a header Host names this machine: an address of the loopback, `address`, which the client has
  /// reached, or a name.
  bool mean(std::string_view host, const std::string& address) const;

 private:
  std::set<std::string> _names;
};

}  // namespace ZebManager
