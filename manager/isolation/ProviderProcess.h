// The process that the plug-in runs in.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "broker/Broker.h"
#include "isolation/ProviderSupervisor.h"

namespace ZebManager {

/// A loaded plug-in and what its process does with it. It goes when no call is under way.
class HostedProvider {
 public:
  HostedProvider() = default;
  HostedProvider(const HostedProvider&) = delete;
  HostedProvider& operator=(const HostedProvider&) = delete;
  virtual ~HostedProvider() = default;

  virtual Broker& broker() = 0;
  /// The whole answer to one message. Called on several threads at once.
  virtual std::string perform(std::string_view message) = 0;
  /// An indication as it goes to listeners.
  virtual std::string instanceElement(const Instance& indication) = 0;
};

/// The descriptor that a provider process inherits: its end of the socket pair.
inline constexpr int kProviderSocket = 3;

/// Loads the plug-in and serves it until the other end closes. Meant to be all that the process does: it
/// ignores the signals that stop a server, and dies with its parent. Returns the exit status.
int runProviderProcess(int socket, const std::function<std::unique_ptr<HostedProvider>()>& load);

}  // namespace ZebManager
