#include "TlsClient.h"

#include <array>

namespace ZebManager {
namespace {

constexpr unsigned kPatienceMs = 20'000;

}  // namespace

TlsClient::TlsClient(const std::string& address, const std::string& priorities) : _connection(address, "") {
  gnutls_init(&_session, GNUTLS_CLIENT);
  gnutls_certificate_allocate_credentials(&_credentials);
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

std::string TlsClient::ask(const std::string& request) {
  gnutls_record_send(_session, request.data(), request.size());
  std::string answer;
  std::array<char, 4096> buffer{};
  for (ssize_t got = 0; (got = gnutls_record_recv(_session, buffer.data(), buffer.size())) > 0;) {
    answer.append(buffer.data(), static_cast<std::size_t>(got));
  }
  return answer;
}

}  // namespace ZebManager
