#include "server/Router.h"

#include <algorithm>
#include <array>

#include "broker/Broker.h"
#include "cimxml/Answer.h"
#include "server/Compression.h"

namespace ZebManager {
namespace {

constexpr char kInterop[] = "root/interop";

/// What the schema alone answers.
constexpr std::array<std::string_view, 5> kOfClasses = {"GetClass", "EnumerateClasses", "EnumerateClassNames",
                                                        "GetQualifier", "EnumerateQualifiers"};

bool isOfClasses(const CimMessage& message) {
  return message.intrinsic && std::any_of(kOfClasses.begin(), kOfClasses.end(), [&](std::string_view name) {
           return sameName(name, message.operation);
         });
}

std::string writersOf(const std::string& group) {
  return group.empty() ? "root alone may write" : "root and members of '" + group + "' may write";
}

std::optional<HttpAnswer> refuseUser(const std::optional<User>& user, const CimMessage& message,
                                     const std::string& writers) {
  if (!message.writes) return std::nullopt;
  if (!user) return httpError(401);
  if (user->mayWrite) return std::nullopt;
  return operationAnswer(
      errorAnswer(message, CMPI_RC_ERR_ACCESS_DENIED, "user '" + user->name + "' may only read; " + writers));
}

}  // namespace

Router::Router(Authenticator& users, ProviderSupervisor& plugin, const ClassRepository& repository,
               Namespace* interop, const ServerSettings& settings, Resources resources)
    : _users(users),
      _plugin(plugin),
      _noProvider(repository, kNameSpace),
      _classes(_noProvider),
      _interop(interop),
      _pulled(settings.pull),
      _hosts(settings.names),
      _resources(std::move(resources)),
      _writers(writersOf(settings.login.writeGroup)),
      _deepest(settings.requestDepth) {
  _aliases.emplace_back("interop", kInterop);
  for (const std::string& alias : settings.aliases) {
    if (!sameName(alias, kInterop) && !sameName(alias, kNameSpace)) _aliases.emplace_back(alias, kNameSpace);
  }
}

std::optional<HttpAnswer> Router::refuse(const HttpHead& head) const {
  if (auto refusal = refuseAmbiguous(head)) return refusal;
  const std::string host = head.header("Host");
  if (!host.empty() && !_hosts.mean(host, head.own))
    return httpError(421, "", "Host does not name this machine");
  if (isForResource(head, _resources)) return refuseResource(head, _resources);
  if (auto refusal = refuseHead(head)) return extended(head, std::move(*refusal));
  return std::nullopt;
}

Party Router::partyOf(const HttpHead& head) {
  const std::string authorization = head.header("Authorization");
  if (authorization.empty() && !head.certificate) return {Party::Kind::Nobody, head.client};
  const auto user =
      authorization.empty() ? _users.knownBefore(*head.certificate) : _users.knownBefore(authorization);
  return user ? Party{Party::Kind::User, *user} : Party{Party::Kind::Stranger, head.client};
}

Router::Admission Router::admit(const HttpHead& head) {
  const std::string authorization = head.header("Authorization");
  if (authorization.empty() && !head.certificate) {
    return head.fromLoopback ? Admission() : Admission{httpError(401)};
  }
  Login login = authorization.empty() ? _users.check(*head.certificate, head.host, head.client)
                                      : _users.check(authorization, head.host, head.client);
  if (login.user) return {std::nullopt, std::move(login.user)};
  return {login.later > std::chrono::seconds(0) ? busy(login.later) : httpError(401)};
}

/// Throws CimError when the plug-in's process gives no answer.
std::string Router::performOnPlugin(std::string_view message, bool repeatable) {
  ProviderSupervisor::Answer result = _plugin.perform(message, repeatable);
  if (result.outcome == ProviderSupervisor::Answer::Outcome::Done) return std::move(result.body);
  throw CimError(CMPI_RC_ERR_FAILED, result.body);
}

/// `user`: empty for nobody.
std::string Router::perform(std::string_view body, const CimMessage& message, const std::string& user) {
  for (const auto& [alias, nameSpace] : _aliases) {
    if (!sameName(message.nameSpace, alias)) continue;
    CimMessage own = message;
    own.nameSpace = nameSpace;
    return perform(withNameSpace(body, alias, nameSpace), own, user);
  }
  Namespace* const interop = sameName(message.nameSpace, kInterop) ? _interop : nullptr;
  if (!interop && !sameName(message.nameSpace, kNameSpace)) {
    return errorAnswer(message, CMPI_RC_ERR_INVALID_NAMESPACE,
                       "there is no namespace '" + message.nameSpace + "'");
  }
  if (PulledOperations::have(message)) {
    return _pulled.answer(body, message, user, [&](const std::string& step) {
      return interop ? performStep(step, *interop) : performOnPlugin(step, true);
    });
  }
  if (interop) return answer(body, *interop);
  if (isOfClasses(message)) return answer(body, _classes);
  try {
    return performOnPlugin(body, !message.writes);
  } catch (const CimError& error) {
    return errorAnswer(message, error.code, descriptionOf(error));
  }
}

HttpAnswer Router::answerTo(const HttpHead& head, const std::optional<User>& user, std::string_view body) {
  try {
    const CimMessage message = readMessage(body, _deepest);
    if (auto refusal = refuseMismatch(head, message)) return std::move(*refusal);
    if (auto refusal = refuseUser(user, message, _writers)) return std::move(*refusal);
    return operationAnswer(perform(body, message, user ? user->name : std::string()));
  } catch (const MessageError& error) {
    return httpError(static_cast<unsigned>(error.status), error.header, error.what());
  } catch (const std::exception&) {
    return httpError(500);
  }
}

std::string Router::answerTo(const User& user, std::string_view body) {
  const CimMessage message = readMessage(body, _deepest);
  if (auto refusal = refuseUser(user, message, _writers)) return std::move(refusal->body);
  return perform(body, message, user.name);
}

std::string Router::shown(const std::string& message) {
  try {
    return performOnPlugin(message, true);
  } catch (const CimError& error) {
    return errorAnswer(CimMessage(), error.code, descriptionOf(error));
  }
}

HttpAnswer Router::resourceAnswer(const HttpHead& head) const {
  try {
    return _resources.at(head.path)(head);
  } catch (const std::exception&) {
    return httpError(500);
  }
}

HttpAnswer Router::handle(const HttpHead& head, const std::optional<User>& user, std::string_view body) {
  return compressed(head, isForResource(head, _resources) ? resourceAnswer(head)
                                                          : extended(head, answerTo(head, user, body)));
}

}  // namespace ZebManager
