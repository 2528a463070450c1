// A socket that listens.
#pragma once

#include <string>

#include "posix/FileDescriptor.h"

namespace ZebManager {

struct ListeningSocket {
  ZEB::FileDescriptor socket;
  std::string address;  ///< with the port that was bound
};

/// Whether `listenAt` can read it.
bool isListeningAddress(const std::string& where);

/// Binds "ADDRESS:PORT"; the address is numeric, in brackets for IPv6, localhost, or * for
/// all. Throws ManagerError.
ListeningSocket listenAt(const std::string& where);

}  // namespace ZebManager
