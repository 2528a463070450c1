// What the configuration file of the server says.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "alertmanager/AlertmanagerSettings.h"
#include "cimxml/Message.h"
#include "indications/Delivery.h"
#include "isolation/ProviderSupervisor.h"
#include "login/LoginSettings.h"
#include "pull/EnumerationTable.h"
#include "server/ClientCertificate.h"

namespace ZebManager {

struct ServerSettings {
  std::string http =
      "127.0.0.1:5988";  ///< address and port, or none (see `isNowhere`); port 0: any that is free
  std::string https = "127.0.0.1:5989";  ///< likewise
  std::vector<std::string> names;        ///< of this machine, besides those that it knows
  std::vector<std::string> aliases;      ///< other names of the namespace that the plug-in serves
  std::string certificate;               ///< PEM file; without it the server makes one
  std::string key;                       ///< PEM file; empty: it is in the file of the certificate
  std::string clientAuthority;  ///< PEM file of who signs clients' certificates; empty: none are asked for
  CertificateUsers certificateUsers;
  LoginSettings login;
  std::string stateDirectory = "/var/lib/zebcim";
  unsigned connections = 256;
  unsigned connectionsPerAddress = 128;  ///< that wait for a request
  unsigned requestBytes = 4U << 20;
  unsigned requestDepth = kDeepestElement;  ///< of elements in each other
  unsigned waitingBytes = 64U << 20;        ///< bodies of all requests that are under way
  unsigned answerBytes = 256U << 20;        ///< all answers that their clients have not taken yet
  std::chrono::seconds requestTime{10};     ///< until a request has arrived, and between two of a connection
  std::chrono::seconds stopTime{5};         ///< from being asked to end until the end
  PullLimits pull;                          ///< enumerations that clients take piece by piece
  SupervisorOptions plugin;                 ///< without program, arguments and log
  DeliverySettings delivery;                ///< without the directory
  AlertmanagerSettings alertmanager;
};

/// Reads a file; one that is not there, where it `mayLack`, leaves everything its default. What is unknown or
/// has a bad value is a line for `warn` that names file, line and key, and keeps its default. Throws
/// ManagerError for a file that cannot be read or is no TOML, and for anything wrong in [listen] and
/// [access].
ServerSettings readServerSettings(const std::string& file, bool mayLack,
                                  const std::function<void(const std::string&)>& warn);

/// Whether a place to listen at says that there is to be none.
inline bool isNowhere(const std::string& place) {
  return place.empty() || place == "none";
}

inline constexpr char kServerSettingsFile[] = "/etc/qv-zeb/zebcim.toml";

}  // namespace ZebManager
