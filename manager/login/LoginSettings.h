// Who may log in, as the configuration says it.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace ZebManager {

struct LoginSettings {
  std::string pamService = "zebcim";
  std::string pamFolder;  ///< of service files; empty: the system's
  std::string writeGroup = "zebcim";
};

/// A key of the section [access].
struct LoginKey {
  std::string_view name;
  std::string LoginSettings::*member;
  bool mayBeEmpty;
};

inline constexpr std::array kLoginKeys = {
    LoginKey{"pam-service", &LoginSettings::pamService, false},
    LoginKey{"pam-folder", &LoginSettings::pamFolder, true},
    LoginKey{"write-group", &LoginSettings::writeGroup, true},
};

/// Reads them from the file of the server, by the process that trusts nobody else with them. A file that is
/// not there is all defaults. Throws ManagerError for one that cannot be read, and for a bad value.
LoginSettings readLoginSettings(const std::string& file);

}  // namespace ZebManager
