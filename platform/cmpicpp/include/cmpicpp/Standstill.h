#pragma once

namespace CmpiCpp {

/// Thrown by an operation that is never to return: it lets go of everything on its way, and the call stands
/// still at the edge of the library (`ManagementInterfaces::Call::standStill`). No failure, and so no
/// `std::exception`.
struct Standstill {};

}  // namespace CmpiCpp
