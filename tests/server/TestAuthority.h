// Certificates for clients, as many as a test wants.
#pragma once

#include <gnutls/gnutls.h>
#include <gnutls/x509.h>

#include <ctime>
#include <string>
#include <utility>
#include <vector>

namespace ZebManager {

/// PEM.
struct Identity {
  std::string certificate;
  std::string key;
};

/// What a certificate says.
struct Wanted {
  std::string commonName = {};
  std::vector<std::pair<gnutls_x509_subject_alt_name_t, std::string>> names = {};
  std::string purpose = GNUTLS_KP_TLS_WWW_CLIENT;  ///< empty: none is named
  std::time_t begin = -3600;                       ///< seconds from now
  std::time_t end = 3600;                          ///< likewise
};

/// Signs them; its own certificate has the same name for all of them.
class TestAuthority {
 public:
  TestAuthority();
  TestAuthority(const TestAuthority&) = delete;
  TestAuthority& operator=(const TestAuthority&) = delete;
  ~TestAuthority();

  const std::string& certificate() const { return _pem; }
  Identity issue(const Wanted& wanted) const;

 private:
  gnutls_x509_privkey_t _key = nullptr;
  gnutls_x509_crt_t _certificate = nullptr;
  std::string _pem;
};

}  // namespace ZebManager
