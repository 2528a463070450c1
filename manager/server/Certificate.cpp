#include "server/Certificate.h"

#include <fcntl.h>
#include <gnutls/crypto.h>
#include <gnutls/gnutls.h>
#include <gnutls/x509.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>

#include "broker/HostName.h"
#include "posix/FileDescriptor.h"
#include "values/FileText.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

constexpr std::time_t kDay = 86'400;
constexpr std::time_t kDaysOfUse = 3650;

void require(int result, const char* what) {
  if (result < 0)
    throw ManagerError(std::string("cannot make a certificate: ") + what + ": " + gnutls_strerror(result));
}

std::string textOf(gnutls_datum_t& datum) {
  std::string text(reinterpret_cast<const char*>(datum.data), datum.size);
  gnutls_free(datum.data);
  return text;
}

struct FreeKey {
  void operator()(gnutls_x509_privkey_t key) const { gnutls_x509_privkey_deinit(key); }
};
struct FreeCertificate {
  void operator()(gnutls_x509_crt_t certificate) const { gnutls_x509_crt_deinit(certificate); }
};

void describe(gnutls_x509_crt_t crt) {
  const std::string& host = hostName();
  const std::time_t now = std::time(nullptr);
  std::array<unsigned char, 16> serial{};
  gnutls_rnd(GNUTLS_RND_NONCE, serial.data(), serial.size());
  serial[0] &= 0x7f;
  require(gnutls_x509_crt_set_version(crt, 3), "version");
  require(gnutls_x509_crt_set_serial(crt, serial.data(), serial.size()), "serial number");
  require(gnutls_x509_crt_set_activation_time(crt, now - kDay), "begin");
  require(gnutls_x509_crt_set_expiration_time(crt, now + kDaysOfUse * kDay), "end");
  require(gnutls_x509_crt_set_dn_by_oid(crt, GNUTLS_OID_X520_COMMON_NAME, 0, host.data(),
                                        static_cast<unsigned>(host.size())),
          "name");
  for (const std::string& name : {host, std::string("localhost")}) {
    require(gnutls_x509_crt_set_subject_alt_name(crt, GNUTLS_SAN_DNSNAME, name.data(),
                                                 static_cast<unsigned>(name.size()), GNUTLS_FSAN_APPEND),
            "host name");
  }
  constexpr std::array<unsigned char, 4> kLoopback = {127, 0, 0, 1};
  require(gnutls_x509_crt_set_subject_alt_name(crt, GNUTLS_SAN_IPADDRESS, kLoopback.data(), kLoopback.size(),
                                               GNUTLS_FSAN_APPEND),
          "address");
  require(gnutls_x509_crt_set_basic_constraints(crt, 0, -1), "constraints");
}

Certificate make() {
  gnutls_x509_privkey_t rawKey = nullptr;
  require(gnutls_x509_privkey_init(&rawKey), "key");
  const std::unique_ptr<gnutls_x509_privkey_int, FreeKey> key(rawKey);
  require(gnutls_x509_privkey_generate(rawKey, GNUTLS_PK_ECDSA,
                                       GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0),
          "key");
  gnutls_x509_crt_t rawCrt = nullptr;
  require(gnutls_x509_crt_init(&rawCrt), "certificate");
  const std::unique_ptr<gnutls_x509_crt_int, FreeCertificate> crt(rawCrt);
  describe(rawCrt);
  require(gnutls_x509_crt_set_key(rawCrt, rawKey), "key");
  require(gnutls_x509_crt_sign2(rawCrt, rawCrt, rawKey, GNUTLS_DIG_SHA256, 0), "signature");
  gnutls_datum_t certificateText{};
  gnutls_datum_t keyText{};
  require(gnutls_x509_crt_export2(rawCrt, GNUTLS_X509_FMT_PEM, &certificateText), "certificate");
  require(gnutls_x509_privkey_export2(rawKey, GNUTLS_X509_FMT_PEM, &keyText), "key");
  return {textOf(certificateText), textOf(keyText), {}};
}

void store(const std::string& file, const std::string& content) {
  const std::string fresh = file + ".new";
  const ZEB::FileDescriptor out(open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  const auto size = static_cast<ssize_t>(content.size());
  if (!out || write(out.get(), content.data(), content.size()) != size || fsync(out.get()) != 0 ||
      rename(fresh.c_str(), file.c_str()) != 0) {
    throw ManagerError("cannot write " + file + ": " + std::strerror(errno));
  }
}

struct FreeCredentials {
  void operator()(gnutls_certificate_credentials_t credentials) const {
    gnutls_certificate_free_credentials(credentials);
  }
};

gnutls_datum_t viewOf(const std::string& text) {
  return {const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(text.data())),
          static_cast<unsigned>(text.size())};
}

/// The library that serves says nothing about what it cannot use.
Certificate configured(const std::string& file, const std::string& keyFile) {
  Certificate read{textOfFile(file), textOfFile(keyFile), {}};
  gnutls_certificate_credentials_t raw = nullptr;
  require(gnutls_certificate_allocate_credentials(&raw), "memory");
  const std::unique_ptr<gnutls_certificate_credentials_st, FreeCredentials> credentials(raw);
  const gnutls_datum_t certificate = viewOf(read.certificate);
  const gnutls_datum_t key = viewOf(read.key);
  const int result = gnutls_certificate_set_x509_key_mem(raw, &certificate, &key, GNUTLS_X509_FMT_PEM);
  if (result < 0) {
    throw ManagerError("cannot use the certificate " + file + " with the key " + keyFile + ": " +
                       gnutls_strerror(result));
  }
  return read;
}

/// Of those who sign clients' certificates.
std::string authority(const std::string& file) {
  std::string read = textOfFile(file);
  gnutls_certificate_credentials_t raw = nullptr;
  require(gnutls_certificate_allocate_credentials(&raw), "memory");
  const std::unique_ptr<gnutls_certificate_credentials_st, FreeCredentials> credentials(raw);
  const gnutls_datum_t certificates = viewOf(read);
  const int count = gnutls_certificate_set_x509_trust_mem(raw, &certificates, GNUTLS_X509_FMT_PEM);
  if (count > 0) return read;
  throw ManagerError("cannot use the certificates of " + file + ": " +
                     (count < 0 ? gnutls_strerror(count) : "there are none"));
}

Certificate ownCertificate(const ServerSettings& settings, const LogLine& log) {
  if (!settings.certificate.empty()) {
    return configured(settings.certificate, settings.key.empty() ? settings.certificate : settings.key);
  }
  const std::string file = settings.stateDirectory + "/server.pem";
  std::error_code error;
  if (std::filesystem::exists(file, error)) {
    const std::string both = textOfFile(file);
    return {both, both, {}};
  }
  Certificate made = make();
  try {
    std::filesystem::create_directories(settings.stateDirectory, error);
    store(file, made.certificate + made.key);  // one file, so that they always belong together
  } catch (const ManagerError& unwritable) {
    log(std::string("the certificate is another one at the next start: ") + unwritable.what());
  }
  return made;
}

}  // namespace

Certificate certificateFor(const ServerSettings& settings, const LogLine& log) {
  Certificate certificate = ownCertificate(settings, log);
  if (!settings.clientAuthority.empty()) certificate.clientAuthority = authority(settings.clientAuthority);
  return certificate;
}

}  // namespace ZebManager
