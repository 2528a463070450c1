// How things are posted to somebody.
#pragma once

#include <chrono>
#include <string>

namespace ZebManager {

/// What holds for everybody that something is posted to.
struct PostSettings {
  std::chrono::milliseconds firstPause = std::chrono::seconds(1);  ///< after a failure; doubled after each
  std::chrono::milliseconds longestPause = std::chrono::seconds(60);
  std::chrono::milliseconds connectTimeout = std::chrono::seconds(10);
  std::chrono::milliseconds answerTimeout = std::chrono::seconds(30);  ///< of one exchange as a whole
  bool verifyCertificates = true;   ///< whether who uses HTTPS has to show one that can be trusted
  std::string trustedCertificates;  ///< file of certificates (PEM) that are trusted; empty: the system's
};

}  // namespace ZebManager
