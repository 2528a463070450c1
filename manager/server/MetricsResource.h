// What Prometheus scrapes.
#pragma once

#include "isolation/ProviderSupervisor.h"
#include "server/Resources.h"

namespace ZebManager {

/// Metrics, made in the plug-in's process, in the format that the client prefers.
Resource metricsResource(ProviderSupervisor& plugin);

}  // namespace ZebManager
