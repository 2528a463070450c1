#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

namespace ZEB::test {

/// Runs `body` on a thread of its own in a new network namespace, which ends with the thread and the sockets
/// that were opened in it. Returns false, without running anything, where that is not allowed.
bool inNamespace(const std::function<void()>& body);

/// A command of `ip`, in the calling thread's namespace; a failure of it is a failure of the test.
void ip(const std::string& arguments);

/// Many commands of `ip`, one a line.
void ipBatch(const std::string& commands);

/// What `ip -j` prints.
nlohmann::json ipJson(const std::string& arguments);

/// Pairs a0/b0, a1/b1 and so on, all up.
void makePairs(int count);

/// Waits until `condition` holds, but not for ever; returns whether it did.
bool eventually(const std::function<bool()>& condition,
                std::chrono::seconds patience = std::chrono::seconds(10));

}  // namespace ZEB::test

/// Runs a test body, a lambda, in a namespace of its own, and skips the test where there is none.
#define IN_NAMESPACE(...)                                                                                  \
  do {                                                                                                     \
    if (!::ZEB::test::inNamespace(__VA_ARGS__)) GTEST_SKIP() << "not allowed to make a network namespace"; \
  } while (false)
