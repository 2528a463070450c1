// What the configuration file of the server says.
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace ZebHost {

struct ServerSettings {
  std::string http = "127.0.0.1:5988";   ///< address and port; empty for none; port 0: any that is free
  std::string https = "127.0.0.1:5989";  ///< likewise
  std::string certificate;               ///< PEM file; without it the server makes one
  std::string key;                       ///< PEM file
  std::string pamService = "zebcim";
  std::string pamFolder;  ///< of service files; empty: the system's
  std::string writeGroup = "zebcim";
  std::string stateDirectory = "/var/lib/zebcim";
  unsigned connections = 256;
  unsigned connectionsPerAddress = 128;
  unsigned requestBytes = 4U << 20;
  unsigned waitingBytes = 64U << 20;         ///< bodies of all requests that are under way
  std::chrono::seconds requestTime{10};      ///< until a request has arrived, and between two of a connection
  std::chrono::seconds callTime{30};         ///< until an operation has to have returned
  std::chrono::milliseconds patience{1000};  ///< of other calls with one that does not return
};

/// Reads a file; without it everything has its default. What is unknown or has a bad value is a line for
/// `warn` and keeps its default. Throws HostError for a file that is no TOML.
ServerSettings readServerSettings(const std::string& file,
                                  const std::function<void(const std::string&)>& warn);

inline constexpr char kServerSettingsFile[] = "/etc/qv-zeb/zebcim.toml";

}  // namespace ZebHost
