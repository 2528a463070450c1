// A client of HTTPS that offers what it is told to.
#pragma once

#include <gnutls/gnutls.h>

#include <string>

#include "Server.h"

namespace ZebManager {

/// Takes any certificate.
class TlsClient {
 public:
  /// `priorities`: as GnuTLS writes them.
  TlsClient(const std::string& address, const std::string& priorities);
  TlsClient(const TlsClient&) = delete;
  TlsClient& operator=(const TlsClient&) = delete;
  ~TlsClient();

  /// Whether the server and the client have agreed.
  bool connected() const { return _result == GNUTLS_E_SUCCESS; }
  /// What the server answers until it closes.
  std::string ask(const std::string& request);

 private:
  const OpenConnection _connection;
  gnutls_session_t _session = nullptr;
  gnutls_certificate_credentials_t _credentials = nullptr;
  int _result = GNUTLS_E_INTERNAL_ERROR;
};

}  // namespace ZebManager
