#include "TestAuthority.h"

#include <gnutls/crypto.h>

#include <array>
#include <stdexcept>

namespace ZebManager {
namespace {

void require(int result) {
  if (result < 0)
    throw std::runtime_error(std::string("no certificate for the test: ") + gnutls_strerror(result));
}

std::string textOf(gnutls_datum_t& pem) {
  std::string text(reinterpret_cast<const char*>(pem.data), pem.size);
  gnutls_free(pem.data);
  return text;
}

gnutls_x509_privkey_t makeKey() {
  gnutls_x509_privkey_t key = nullptr;
  require(gnutls_x509_privkey_init(&key));
  require(gnutls_x509_privkey_generate(key, GNUTLS_PK_ECDSA, GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1),
                                       0));
  return key;
}

/// With all but what the signature needs.
gnutls_x509_crt_t describe(const Wanted& wanted, gnutls_x509_privkey_t key) {
  gnutls_x509_crt_t made = nullptr;
  require(gnutls_x509_crt_init(&made));
  std::array<unsigned char, 8> serial{};
  gnutls_rnd(GNUTLS_RND_NONCE, serial.data(), serial.size());
  serial[0] &= 0x7f;
  const std::time_t now = std::time(nullptr);
  require(gnutls_x509_crt_set_version(made, 3));
  require(gnutls_x509_crt_set_serial(made, serial.data(), serial.size()));
  require(gnutls_x509_crt_set_activation_time(made, now + wanted.begin));
  require(gnutls_x509_crt_set_expiration_time(made, now + wanted.end));
  if (!wanted.commonName.empty()) {
    require(gnutls_x509_crt_set_dn_by_oid(made, GNUTLS_OID_X520_COMMON_NAME, 0, wanted.commonName.data(),
                                          static_cast<unsigned>(wanted.commonName.size())));
  }
  for (const auto& [kind, name] : wanted.names) {
    require(gnutls_x509_crt_set_subject_alt_name(made, kind, name.data(), static_cast<unsigned>(name.size()),
                                                 GNUTLS_FSAN_APPEND));
  }
  if (!wanted.purpose.empty()) require(gnutls_x509_crt_set_key_purpose_oid(made, wanted.purpose.c_str(), 0));
  require(gnutls_x509_crt_set_key(made, key));
  return made;
}

std::string pemOf(gnutls_x509_crt_t certificate) {
  gnutls_datum_t text{};
  require(gnutls_x509_crt_export2(certificate, GNUTLS_X509_FMT_PEM, &text));
  return textOf(text);
}

}  // namespace

TestAuthority::TestAuthority()
    : _key(makeKey()), _certificate(describe({.commonName = "authority", .purpose = ""}, _key)) {
  require(gnutls_x509_crt_set_basic_constraints(_certificate, 1, -1));
  require(gnutls_x509_crt_set_key_usage(_certificate, GNUTLS_KEY_KEY_CERT_SIGN));
  require(gnutls_x509_crt_sign2(_certificate, _certificate, _key, GNUTLS_DIG_SHA256, 0));
  _pem = pemOf(_certificate);
}

TestAuthority::~TestAuthority() {
  gnutls_x509_crt_deinit(_certificate);
  gnutls_x509_privkey_deinit(_key);
}

Identity TestAuthority::issue(const Wanted& wanted) const {
  const gnutls_x509_privkey_t key = makeKey();
  const gnutls_x509_crt_t made = describe(wanted, key);
  require(gnutls_x509_crt_sign2(made, _certificate, _key, GNUTLS_DIG_SHA256, 0));
  gnutls_datum_t keyText{};
  require(gnutls_x509_privkey_export2(key, GNUTLS_X509_FMT_PEM, &keyText));
  const Identity identity{pemOf(made), textOf(keyText)};
  gnutls_x509_crt_deinit(made);
  gnutls_x509_privkey_deinit(key);
  return identity;
}

}  // namespace ZebManager
