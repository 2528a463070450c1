// What becomes of a request.
#pragma once

#include <string>
#include <string_view>

#include "isolation/ProviderSupervisor.h"
#include "plugin/PluginNamespace.h"
#include "pull/PulledOperations.h"
#include "server/Authenticator.h"
#include "server/HostNames.h"
#include "server/HttpHead.h"
#include "server/Resources.h"
#include "server/SharedBound.h"

namespace ZebManager {

/// Safe from several threads.
class Router {
 public:
  /// `interop`: null when there is no such namespace.
  Router(Authenticator& users, ProviderSupervisor& plugin, const ClassRepository& repository,
         Namespace* interop, const ServerSettings& settings, Resources resources);

  /// What is wrong with a head, whoever it is from.
  std::optional<HttpAnswer> refuse(const HttpHead& head) const;
  /// Whose share the request counts towards until it is admitted.
  Party partyOf(const HttpHead& head);
  /// What can be said before the body has come: who asks, or the answer when nobody may.
  struct Admission {
    std::optional<HttpAnswer> refusal = std::nullopt;
    std::optional<User> user = std::nullopt;
  };
  Admission admit(const HttpHead& head);
  HttpAnswer handle(const HttpHead& head, const std::optional<User>& user, std::string_view body);
  /// The document that answers a request of a user of this machine. Throws MessageError.
  std::string answerTo(const User& user, std::string_view body);
  /// What the plug-in's process writes for a `shownMessage`. `message`: one that `shownAskedFor` knows.
  std::string shown(const std::string& message);

 private:
  HttpAnswer answerTo(const HttpHead& head, const std::optional<User>& user, std::string_view body);
  HttpAnswer resourceAnswer(const HttpHead& head) const;
  std::string perform(std::string_view body, const CimMessage& message, const std::string& user);
  std::string performOnPlugin(std::string_view message, bool repeatable);

  Authenticator& _users;
  ProviderSupervisor& _plugin;
  const ProviderCalls _noProvider;
  PluginNamespace _classes;
  Namespace* const _interop;
  PulledOperations _pulled;
  std::vector<std::pair<std::string, std::string>> _aliases;  ///< of namespaces, and what they stand for
  const HostNames _hosts;
  const Resources _resources;
  const std::string _writers;  ///< who may write, in words
  const unsigned _deepest;     ///< of elements of a request in each other
};

}  // namespace ZebManager
