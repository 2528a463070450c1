// What is there for GET.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "server/HttpHead.h"

namespace ZebManager {

/// Makes the answer to a GET; for a HEAD its body is not sent. May be called on several threads at once, and
/// throw: the client is told that something went wrong.
using Resource = std::function<HttpAnswer(const HttpHead& head)>;

/// By path, as the client writes it without what follows a question mark. Who may read CIM may read these.
using Resources = std::map<std::string, Resource, std::less<>>;

/// Bytes that are always the same and outlive the server.
Resource fixedBytes(std::string_view bytes, const char* contentType);

/// What is wrong with a request for something that is not CIM: there is no such path, or another method than
/// GET and HEAD.
std::optional<HttpAnswer> refuseResource(const HttpHead& head, const Resources& resources);

/// Whether a request is for one of the resources, and not an operation of CIM, which may come on any path but
/// theirs; on "/" there may be both.
bool isForResource(const HttpHead& head, const Resources& resources);

}  // namespace ZebManager
