// What clients send who mean no good, and what becomes of it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Server.h"

namespace ZebManager {

/// The header that names a user.
std::string credentials(const std::string& user, const std::string& password);

/// A request for the names of all classes, which the plug-in has no part in.
std::string namesOfClasses(const std::string& moreHeaders = {});
/// A request for all instances of a class.
std::string instancesOf(const std::string& className, const std::string& moreHeaders = {});

/// What the server answers (`std::exchange` would take two texts, too); 0 when it closes without.
std::string ask(const std::string& address, const std::string& request, double seconds = 60);
int statusOf(const std::string& answer);

/// Runs `work` on so many threads at once, and waits for them.
void together(int threads, const std::function<void(int thread)>& work);

}  // namespace ZebManager
