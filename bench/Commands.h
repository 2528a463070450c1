#pragma once

#include <span>
#include <string>

#include "Figures.h"

namespace ZebBench {

/// What follows a command on the command line. Each command adds its figures, in milliseconds unless their
/// name says otherwise, and throws what keeps it from measuring.
using Arguments = std::span<const std::string>;

/// Loading the plug-in, to the full model.
void measureCold(Arguments arguments, Figures& figures);
/// ROUNDS: requests of one client, on a model that is there.
void measureRequests(Arguments arguments, Figures& figures);
/// ROUNDS: passes of the worker in which nothing has happened.
void measurePasses(Arguments arguments, Figures& figures);
/// ROUNDS: metrics as text, without a server, `ip -j -s -d link` between them.
void measureScrapes(Arguments arguments, Figures& figures);
/// NAMESPACE ROUNDS: from a link message to the alert, one link at a time. Link "pI" of the namespace is the
/// peer of the port "eI".
void measureAlerts(Arguments arguments, Figures& figures);
/// NAMESPACE ROUNDS GROUP: all links of a group of that namespace down at once, and up again.
void measureStorm(Arguments arguments, Figures& figures);
/// SECONDS WINDOWS: the processor's time while nothing happens, in per cent of a core.
void measureIdle(Arguments arguments, Figures& figures);

}  // namespace ZebBench
