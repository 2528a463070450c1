#include "TlsClient.h"

#include <array>

namespace ZebManager {
namespace {

constexpr unsigned kPatienceMs = 20'000;

gnutls_datum_t viewOf(const std::string& text) {
  return {const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(text.data())),
          static_cast<unsigned>(text.size())};
}

}  // namespace

TlsClient::TlsClient(const std::string& address, const std::string& priorities,
                     const std::string& certificate, const std::string& key)
    : _connection(address, "") {
  gnutls_init(&_session, GNUTLS_CLIENT | GNUTLS_FORCE_CLIENT_CERT);
  gnutls_certificate_allocate_credentials(&_credentials);
  if (!certificate.empty()) {
    const gnutls_datum_t own = viewOf(certificate), ownKey = viewOf(key);
    if (gnutls_certificate_set_x509_key_mem(_credentials, &own, &ownKey, GNUTLS_X509_FMT_PEM) < 0)
      throw std::runtime_error("certificate");
  }
  gnutls_credentials_set(_session, GNUTLS_CRD_CERTIFICATE, _credentials);
  gnutls_transport_set_int(_session, _connection.socket());
  gnutls_handshake_set_timeout(_session, kPatienceMs);
  gnutls_record_set_timeout(_session, kPatienceMs);
  if (gnutls_priority_set_direct(_session, priorities.c_str(), nullptr) != 0)
    throw std::runtime_error(priorities);
  do _result = gnutls_handshake(_session);
  while (_result < 0 && gnutls_error_is_fatal(_result) == 0);
}

TlsClient::~TlsClient() {
  gnutls_deinit(_session);
  gnutls_certificate_free_credentials(_credentials);
}

std::string TlsClient::ask(const std::string& request, const std::string& end) {
  gnutls_record_send(_session, request.data(), request.size());
  std::string answer;
  std::array<char, 4096> buffer{};
  for (ssize_t got = 0; (got = gnutls_record_recv(_session, buffer.data(), buffer.size())) > 0;) {
    answer.append(buffer.data(), static_cast<std::size_t>(got));
    if (!end.empty() && answer.find(end) != std::string::npos) break;
  }
  return answer;
}

}  // namespace ZebManager
