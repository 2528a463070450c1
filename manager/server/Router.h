// What becomes of a request.
#pragma once

#include <string>
#include <string_view>

#include "isolation/ProviderSupervisor.h"
#include "plugin/PluginNamespace.h"
#include "server/Authenticator.h"
#include "server/HttpHead.h"

namespace ZebManager {

/// Safe from several threads.
class Router {
 public:
  /// `interop`: null when there is no such namespace. `deepest`: of elements of a request in each other.
  Router(Authenticator& users, ProviderSupervisor& plugin, const ClassRepository& repository,
         Namespace* interop, unsigned deepest);

  /// The answer to a request that can be refused before its body has come.
  std::optional<HttpAnswer> refuse(const HttpHead& head);
  HttpAnswer handle(const HttpHead& head, std::string_view body);

 private:
  HttpAnswer answerTo(const HttpHead& head, std::string_view body);
  std::optional<HttpAnswer> refuseUser(const HttpHead& head, const CimMessage& message);
  std::string perform(std::string_view body, const CimMessage& message);

  Authenticator& _users;
  ProviderSupervisor& _plugin;
  const ProviderCalls _noProvider;
  PluginNamespace _classes;
  Namespace* const _interop;
  const unsigned _deepest;
};

}  // namespace ZebManager
