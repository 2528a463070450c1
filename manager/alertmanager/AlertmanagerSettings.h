// Where alerts are sent, and as whom.
#pragma once

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "indications/PostSettings.h"

namespace ZebManager {

struct AlertmanagerSettings {
  std::vector<std::string> urls;    ///< each gets every alert; none: nothing is kept and sent
  std::string trustedCertificates;  ///< PEM file; empty: what the system trusts
  std::string credentials;          ///< file with one line, "Basic USER:PASSWORD" or "Bearer TOKEN"
  std::map<std::string, std::string> labels = {};  ///< of this site, for every alert
  std::chrono::seconds resend{60};                 ///< what is open
};

/// Whether a URL is one to which "/api/v2/alerts" can be added.
bool isAlertmanagerUrl(const std::string& url);

/// "name=value" in its parts; false for what is no label of a site.
bool readLabel(const std::string& text, std::pair<std::string, std::string>& label);

}  // namespace ZebManager
