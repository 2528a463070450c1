// The socket by which a service is found.
#pragma once

#include <sys/types.h>

#include <string>

#include "posix/FileDescriptor.h"

namespace ZebManager {

/// Binds a socket that everybody on this machine may connect to, in a folder that is made when it is missing.
/// One that a service left behind is replaced. Throws ManagerError: another service listens there, or there
/// can be no socket.
ZEB::FileDescriptor listenLocally(const std::string& path);

/// Nothing when nobody listens there. Throws ManagerError when the service cannot be asked.
ZEB::FileDescriptor connectLocally(const std::string& path);

/// Who is at the other end, as the kernel saw it connect.
struct Peer {
  uid_t user = static_cast<uid_t>(-1);
  gid_t group = static_cast<gid_t>(-1);
};
Peer peerOf(int socket);

}  // namespace ZebManager
