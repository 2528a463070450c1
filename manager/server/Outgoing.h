// Answers on their way to clients.
#pragma once

#include "server/HttpHead.h"
#include "server/SharedBound.h"

struct MHD_Connection;

namespace ZebManager {

/// What an answer is sent with.
struct SendingBounds {
  SharedBound& bytes;    ///< that clients have not taken yet
  SharedBound& streams;  ///< bodies that are made while they are sent
  int ending;            ///< a descriptor that is readable from when streams have to end
};

/// How long nothing may come of a stream before its heartbeat is sent.
inline constexpr unsigned kHeartbeatSeconds = 10;

/// Has the library send an answer; what is too much for the bounds becomes another answer. False when the
/// connection is to be closed.
bool sendAnswer(MHD_Connection* connection, const SendingBounds& bounds, const Party& party,
                HttpAnswer answer);

}  // namespace ZebManager
