#include "CaptureFixture.h"

#include <nlohmann/json.hpp>

#include "GuestError.h"

namespace ZEB::guest {

nlohmann::json CaptureFixture::capture() {
  return jsonOf(ZEB_CAPTURE " -");
}

nlohmann::json CaptureFixture::linkOf(const nlohmann::json& snapshot, const std::string& name) {
  for (const nlohmann::json& link : snapshot.at("links")) {
    if (link.at("name") == name) return link;
  }
  throw GuestError("nothing captured of " + name);
}

}  // namespace ZEB::guest
