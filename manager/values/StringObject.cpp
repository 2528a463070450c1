#include "values/Values.h"

namespace ZebManager {
namespace {

CMPIString* clone(const CMPIString* object, CMPIStatus* status) {
  return cloneHandle<String>(object, status, [](Arena& arena, const StringBody& body) {
    return arena.make<StringBody>(arena.copy(body.text));
  });
}

const char* getCharPtr(const CMPIString* object, CMPIStatus* status) {
  const String* const string = as<String>(object);
  put(status, string ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE);
  return string ? string->body().text.data() : nullptr;
}

char* newCharsCP(const CMPIString*, const CMPICodepageID, CMPIStatus* status) {
  put(status, CMPI_RC_ERR_NOT_SUPPORTED, "text is UTF-8 only");
  return nullptr;
}

}  // namespace

const CMPIStringFT kStringFT = {CMPIVersion210, releaseHandle<String>, clone, getCharPtr, newCharsCP};

}  // namespace ZebManager
