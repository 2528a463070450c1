// Who a client of HTTPS is by the certificate that it shows.
#pragma once

#include <map>
#include <optional>
#include <string>

struct gnutls_session_int;

namespace ZebManager {

/// Names in certificates, and whom they sign in.
using CertificateUsers = std::map<std::string, std::string>;

struct ShownCertificate {
  std::string user;     ///< whom it signs in; empty: nobody
  std::string subject;  ///< for the log; where it has none, one of its names
  std::string fault;    ///< why it signs nobody in
};

/// What the client of a connection has shown; nothing when that is none. A certificate counts when an
/// authority that the session trusts has signed it, for clients, and it is in date now. Its names are those
/// for mail, hosts and URIs that it has beside its subject, else the common name of the subject; they have to
/// lead to one user.
std::optional<ShownCertificate> shownBy(gnutls_session_int* session, const CertificateUsers& users);

}  // namespace ZebManager
