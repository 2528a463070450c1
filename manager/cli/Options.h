// What the command line asks for.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "broker/ProviderCalls.h"
#include "cli/JsonOutput.h"

namespace ZebManager {

/// Exit status of `check` when nothing can be said.
inline constexpr int kUnknown = 3;

struct Options {
  std::string command;
  std::string className;
  std::string path;
  std::string method;
  std::string property;                  ///< to explain; empty for all
  std::vector<std::string> assignments;  ///< Name=Value
  AssociationFilter filter;
  bool names = false;
  bool anonymize = false;
  bool advice = false;
  bool openMetrics = false;
  std::string watchCondition;               ///< of a query, empty for every alert
  std::optional<double> watchSeconds;       ///< nothing: until a signal comes
  std::optional<std::uint64_t> watchCount;  ///< likewise

  std::string config;   ///< of the server, as the next four
  std::string helpers;  ///< folder of the sockets behind which its other processes are started
  std::string http;
  std::string https;
  std::string state;

  bool json = false;
  std::string jsonWord;  ///< how; empty without
  bool verbose = false;
  bool standalone = false;
  bool includeVirtual = false;
  std::string source;
  std::string plugin;
  std::string schema;
  unsigned timeoutSeconds = 60;  ///< 0: none

  JsonForm jsonForm() const { return jsonWord == "typed" ? JsonForm::Typed : JsonForm::Plain; }
  /// Whether the command has to load the plug-in itself though a service runs.
  bool wantsPlugin() const { return standalone || includeVirtual || !source.empty() || !plugin.empty(); }
};

/// Reads the command line. Nothing when the process is to end with `exitStatus`: after help (0), and after a
/// wrong command line (2), whose usage went to `err`.
std::optional<Options> parseOptions(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                                    int& exitStatus);

}  // namespace ZebManager
