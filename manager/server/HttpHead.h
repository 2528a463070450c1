// What the head of a request says, and answers that need no more than that.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cimxml/Message.h"
#include "server/ByteStream.h"
#include "server/ClientCertificate.h"

namespace ZebManager {

struct HttpAnswer {
  unsigned status = 200;
  std::string body;
  std::vector<std::pair<std::string, std::string>> headers;
  std::shared_ptr<ByteStream> stream = nullptr;  ///< what follows the body, until it ends; null for nothing
};

struct HttpHead {
  std::string method;
  std::function<std::string(const std::string& name)> header;  ///< empty when there is none
  bool fromLoopback = false;
  std::string host = {};                ///< address of the client
  std::string client = {};              ///< what the client counts as: its address, or a network that is one
  std::string own = {};                 ///< address of ours that the client has reached
  std::vector<std::string> names = {};  ///< of all headers, as they came
  std::string path = {};                ///< what is asked for, without what follows a question mark
  /// What follows it under a name, unescaped; empty when there is none.
  std::function<std::string(const std::string& name)> argument = {};
  std::optional<ShownCertificate> certificate =
      {};  ///< once the head alone has come; nothing when none was shown

  /// Prefix of the headers of CIM: empty, or for M-POST the number that Man gives, and a hyphen.
  std::string prefix() const;
  std::string cimHeader(const std::string& name) const { return header(prefix() + name); }
};

HttpAnswer httpError(unsigned status, const std::string& cimError = {}, const std::string& why = {});

/// The answer to what may be sent again after a time.
HttpAnswer busy(std::chrono::seconds later);

/// What may be read in more than one way, so that two who read it do not agree where the request ends, or
/// whom it is for. The connection is closed behind the answer.
std::optional<HttpAnswer> refuseAmbiguous(const HttpHead& head);

/// What is wrong with the head of an operation, before any of the body has come.
std::optional<HttpAnswer> refuseHead(const HttpHead& head);

/// What headers say of the message must be what the message says.
std::optional<HttpAnswer> refuseMismatch(const HttpHead& head, const CimMessage& message);

/// A document as the answer to an operation.
HttpAnswer operationAnswer(std::string document);

/// An answer as it goes to the client: that to M-POST carries the headers of CIM with the number that the
/// request gave them, and declares them.
HttpAnswer extended(const HttpHead& head, HttpAnswer answer);

}  // namespace ZebManager
