// Where indications can be sent.
#pragma once

#include <string>

namespace ZebManager {

/// Whether a URL is http or https, with a host, and without user or password, which every reader of the
/// namespace would see.
bool isUsableDestination(const std::string& url);

}  // namespace ZebManager
