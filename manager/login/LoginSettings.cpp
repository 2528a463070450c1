#include "login/LoginSettings.h"

#include "login/ConfigurationFile.h"
#include "values/ManagerError.h"

namespace ZebManager {

LoginSettings readLoginSettings(const std::string& file) {
  LoginSettings settings;
  const toml::table tables = readConfiguration(file, true);
  for (const LoginKey& key : kLoginKeys) {
    const auto value = tables["access"][key.name];
    if (!value) continue;
    const auto text = value.value_exact<std::string>();
    if (!text || (text->empty() && !key.mayBeEmpty)) {
      throw ManagerError(file + ": 'access." + std::string(key.name) + "' has a bad value");
    }
    settings.*key.member = *text;
  }
  return settings;
}

}  // namespace ZebManager
