// Debian's command-line WBEM client.
#pragma once

#include <string>
#include <vector>

#include "Process.h"
#include "Server.h"

namespace ZebManager {

struct Question {
  std::string operation;
  /// With its namespace: "root/jxv:ZEB_EthernetPort".
  std::string object;
  /// Behind the object: properties, assignments, a method.
  std::vector<std::string> values = {};
  /// Before the object.
  std::vector<std::string> options = {};
  /// "name:password@", or nothing for nobody.
  std::string user = {};
};

/// Its path, or nothing where the package is not installed.
std::string wbemClient();

/// What it says, over http or https. Each name and value is a line of its own.
Outcome ask(const Server& server, const std::string& scheme, const Question& question);

}  // namespace ZebManager
