// Requests as XML.
#pragma once

#include <string>
#include <string_view>

#include "broker/ProviderCalls.h"

namespace ZebManager {

/// A request of an intrinsic operation. What is empty or null is left out.
class RequestWriter {
 public:
  RequestWriter(std::string_view operation, std::string_view nameSpace);

  RequestWriter& className(std::string_view parameter, std::string_view name);
  RequestWriter& text(std::string_view parameter, std::string_view value);
  RequestWriter& path(std::string_view parameter, const PathBody& path);
  RequestWriter& instance(std::string_view parameter, const InstanceBody& instance);
  /// An instance with its path.
  RequestWriter& namedInstance(std::string_view parameter, const InstanceBody& instance);
  RequestWriter& names(std::string_view parameter, PropertyList names);

  /// The whole request.
  std::string finish();

 private:
  RequestWriter& parameter(std::string_view name, std::string_view content);

  std::string _text;
};

/// The request of a method; one of a class has a path without keys.
std::string methodRequest(const PathBody& path, std::string_view method, const NamedValues& arguments);

}  // namespace ZebManager
