// A socket at an address of its own.
#pragma once

#include <string>

#include "posix/FileDescriptor.h"

namespace ZebManager {

struct BoundSocket {
  ZEB::FileDescriptor socket;
  std::string address;  ///< with the port that was bound
};

/// Whether `listenAt` can read it.
bool isListeningAddress(const std::string& where);

/// Binds "ADDRESS:PORT"; the address is numeric, in brackets for IPv6, localhost, or * for all. Nobody else
/// is kept from listening there. Throws ManagerError when it cannot be, also when somebody listens there;
/// errno says why.
BoundSocket bindAt(const std::string& where);

/// The same, and listens. Throws ManagerError.
BoundSocket listenAt(const std::string& where);

}  // namespace ZebManager
