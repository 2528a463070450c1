// A client of HTTPS that offers what it is told to.
#pragma once

#include <gnutls/gnutls.h>

#include <string>

#include "Server.h"

namespace ZebManager {

/// Takes any certificate.
class TlsClient {
 public:
  /// `priorities`: as GnuTLS writes them. With a certificate and its key (PEM) it shows them, whether the
  /// server trusts who has signed them or not.
  TlsClient(const std::string& address, const std::string& priorities, const std::string& certificate = {},
            const std::string& key = {});
  TlsClient(const TlsClient&) = delete;
  TlsClient& operator=(const TlsClient&) = delete;
  ~TlsClient();

  /// Whether the server and the client have agreed.
  bool connected() const { return _result == GNUTLS_E_SUCCESS; }
  /// What the server answers until it closes, or until that has come.
  std::string ask(const std::string& request, const std::string& end = {});

 private:
  const OpenConnection _connection;
  gnutls_session_t _session = nullptr;
  gnutls_certificate_credentials_t _credentials = nullptr;
  int _result = GNUTLS_E_INTERNAL_ERROR;
};

}  // namespace ZebManager
