// The whole answer to a request.
#pragma once

#include <string>
#include <string_view>

#include "broker/Namespace.h"
#include "cimxml/Message.h"

namespace ZebManager {

/// Performs a request on the namespace that it names. The answer is a complete document; what is wrong with
/// the request, or what the namespace refuses, is a CIM error in it. Throws MessageError for a body that
/// `readMessage` refuses whatever depth it is told to take.
std::string answer(std::string_view body, Namespace& target);

/// The answer whose response holds some elements.
std::string contentAnswer(const CimMessage& message, std::string_view content);

/// The text of an error without the code behind it, which clients get as a number.
std::string_view descriptionOf(const CimError& error);

/// The answer of a request that could not be performed.
std::string errorAnswer(const CimMessage& message, CMPIrc code, std::string_view description);

}  // namespace ZebManager
