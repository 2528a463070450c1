#include "server/ClientCertificate.h"

#include <gnutls/gnutls.h>
#include <gnutls/x509.h>

#include <array>
#include <cstring>
#include <memory>
#include <set>
#include <type_traits>

namespace ZebManager {
namespace {

constexpr std::size_t kLongestName = 256;
constexpr std::size_t kLongestSubject = 1024;
constexpr unsigned kMostNames = 64;

using Names = std::set<std::string>;

struct FreeCertificate {
  void operator()(gnutls_x509_crt_t certificate) const { gnutls_x509_crt_deinit(certificate); }
};
using Certificate = std::unique_ptr<std::remove_pointer_t<gnutls_x509_crt_t>, FreeCertificate>;

/// Null for what is none.
Certificate read(const gnutls_datum_t& bytes) {
  gnutls_x509_crt_t raw = nullptr;
  if (gnutls_x509_crt_init(&raw) < 0) return nullptr;
  Certificate certificate(raw);
  return gnutls_x509_crt_import(raw, &bytes, GNUTLS_X509_FMT_DER) < 0 ? nullptr : std::move(certificate);
}

std::string subjectOf(gnutls_x509_crt_t certificate) {
  std::array<char, kLongestSubject> text{};
  std::size_t size = text.size();
  return gnutls_x509_crt_get_dn(certificate, text.data(), &size) < 0 ? std::string()
                                                                     : std::string(text.data(), size);
}

/// Why the chain is not to be trusted; empty when it is.
std::string faultOf(gnutls_session_t session) {
  char forClients[] = GNUTLS_KP_TLS_WWW_CLIENT;
  gnutls_typed_vdata_st purpose{GNUTLS_DT_KEY_PURPOSE_OID, reinterpret_cast<unsigned char*>(forClients), 0};
  unsigned status = 0;
  const int result = gnutls_certificate_verify_peers(session, &purpose, 1, &status);
  if (result < 0) return gnutls_strerror(result);
  if (status == 0) return {};
  gnutls_datum_t text{};
  if (gnutls_certificate_verification_status_print(status, GNUTLS_CRT_X509, &text, 0) < 0) return "untrusted";
  std::string why(reinterpret_cast<const char*>(text.data));
  gnutls_free(text.data);
  while (why.ends_with(' ') || why.ends_with('.')) why.pop_back();
  return why;
}

bool isName(int kind) {
  return kind == GNUTLS_SAN_RFC822NAME || kind == GNUTLS_SAN_DNSNAME || kind == GNUTLS_SAN_URI;
}

/// Names beside the subject; nothing when they are more or longer than any user has.
std::optional<Names> namesBeside(gnutls_x509_crt_t certificate) {
  Names names;
  for (unsigned i = 0; i <= kMostNames; ++i) {
    std::array<char, kLongestName + 1> text{};
    std::size_t size = text.size();
    const int kind = gnutls_x509_crt_get_subject_alt_name(certificate, i, text.data(), &size, nullptr);
    if (kind == GNUTLS_E_REQUESTED_DATA_NOT_AVAILABLE) return names;
    if (kind < 0) return std::nullopt;
    if (isName(kind)) names.emplace(text.data(), size);
  }
  return std::nullopt;
}

/// The common name of the subject; nothing when it has two, or one that is too long.
std::optional<Names> commonName(gnutls_x509_crt_t certificate) {
  Names names;
  for (unsigned i = 0;; ++i) {
    std::array<char, kLongestName + 1> text{};
    std::size_t size = text.size();
    const int result =
        gnutls_x509_crt_get_dn_by_oid(certificate, GNUTLS_OID_X520_COMMON_NAME, i, 0, text.data(), &size);
    if (result == GNUTLS_E_REQUESTED_DATA_NOT_AVAILABLE) return names;
    if (result < 0 || i > 0) return std::nullopt;
    names.emplace(text.data(), size);
  }
}

std::optional<Names> namesOf(gnutls_x509_crt_t certificate) {
  std::optional<Names> names = namesBeside(certificate);
  return names && names->empty() ? commonName(certificate) : names;
}

/// Nobody when the names lead to none that is known, or to two.
std::string userOf(const Names& names, const CertificateUsers& users) {
  Names found;
  for (const std::string& name : names) {
    if (const auto user = users.find(name); user != users.end()) found.insert(user->second);
  }
  return found.size() == 1 ? *found.begin() : std::string();
}

}  // namespace

std::optional<ShownCertificate> shownBy(gnutls_session_t session, const CertificateUsers& users) {
  unsigned count = 0;
  const gnutls_datum_t* const chain = gnutls_certificate_get_peers(session, &count);
  if (!chain || count == 0) return std::nullopt;
  const Certificate certificate = read(*chain);
  if (!certificate) return ShownCertificate{{}, {}, "it cannot be read"};
  const Names names = namesOf(certificate.get()).value_or(Names());
  ShownCertificate shown{{}, subjectOf(certificate.get()), faultOf(session)};
  if (shown.subject.empty() && !names.empty()) shown.subject = *names.begin();
  if (!shown.fault.empty()) return shown;
  shown.user = userOf(names, users);
  if (shown.user.empty()) shown.fault = "its names lead to no user";
  return shown;
}

}  // namespace ZebManager
