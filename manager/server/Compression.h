// Answers that are compressed because the client asks for it.
#pragma once

#include <string>
#include <string_view>

#include "server/HttpHead.h"

namespace ZebManager {

/// The coding that a header Accept-Encoding wants most of those that there are: "gzip" or "deflate", else
/// none.
std::string codingOf(std::string_view accepted);

/// Text in one of these codings.
std::string compressed(std::string_view text, const std::string& coding);

/// An answer as the head wants it. What is short stays as it is.
HttpAnswer compressed(const HttpHead& head, HttpAnswer answer);

}  // namespace ZebManager
