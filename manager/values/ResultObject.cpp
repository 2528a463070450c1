// Where a provider puts its answers, and how an answer to an up-call is walked.
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

template <class H>
typename H::Face* noClone(const typename H::Face*, CMPIStatus* status) {
  put(status, CMPI_RC_ERR_NOT_SUPPORTED);
  return nullptr;
}

/// What was made in this call lives as long as the answer, so that it is shared and not copied; between mark
/// and release it would be gone before the answer is read.
template <class H, class CopyBody>
H* kept(Arena& keep, const H& handle, CopyBody copyBody) {
  const Arena* const call = currentArena();
  if (handle.arena != call || call->marked()) return makeHandle<H>(keep, copyBody(keep, handle.body()));
  handle.body().shared = true;
  return makeHandle<H>(keep, &handle.body());
}

CMPIStatus returnData(const CMPIResult* object, const CMPIValue* value, const CMPIType type) {
  const Result* const result = as<Result>(object);
  if (!result) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  CMPIData data{};
  const CMPIrc error = takeValue(*result->body().keep, value, type, data);
  if (error == CMPI_RC_OK) result->body().append(data);
  return statusOf(error);
}

CMPIStatus returnInstance(const CMPIResult* object, const CMPIInstance* returned) {
  const Result* const result = as<Result>(object);
  const Instance* const instance = as<Instance>(returned);
  if (!result || !instance) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  if (const TakeInstance* const take = result->body().take) {
    (*take)(instance->body());
    return statusOf(CMPI_RC_OK);
  }
  result->body().append(dataOf(kept(*result->body().keep, *instance, copyInstance)));
  return statusOf(CMPI_RC_OK);
}

CMPIStatus returnObjectPath(const CMPIResult* object, const CMPIObjectPath* returned) {
  const Result* const result = as<Result>(object);
  const ObjectPath* const path = as<ObjectPath>(returned);
  if (!result || !path) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  result->body().append(dataOf(kept(*result->body().keep, *path, copyPath)));
  return statusOf(CMPI_RC_OK);
}

CMPIStatus returnDone(const CMPIResult* object) {
  const Result* const result = as<Result>(object);
  if (!result) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  result->body().complete = true;
  return statusOf(CMPI_RC_OK);
}

CMPIStatus returnError(const CMPIResult*, const CMPIError*) {
  return statusOf(CMPI_RC_ERR_NOT_SUPPORTED, "extended errors are not offered");
}

CMPIData getNext(const CMPIEnumeration* object, CMPIStatus* status) {
  const Enumeration* const list = as<Enumeration>(object);
  const bool there = list && list->body().position < list->body().count;
  put(status, there ? CMPI_RC_OK : list ? CMPI_RC_ERR_NOT_FOUND : CMPI_RC_ERR_INVALID_HANDLE);
  if (!there) return {CMPI_null, CMPI_notFound, {}};
  return list->body().items[list->body().position++];
}

CMPIBoolean hasNext(const CMPIEnumeration* object, CMPIStatus* status) {
  const Enumeration* const list = as<Enumeration>(object);
  put(status, list ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE);
  return list && list->body().position < list->body().count;
}

CMPIArray* toArray(const CMPIEnumeration* object, CMPIStatus* status) {
  const Enumeration* const list = as<Enumeration>(object);
  put(status, list ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE);
  if (!list) return nullptr;
  const ListBody& body = list->body();
  Array* const array = makeArray(*list->arena, body.count, body.count ? body.items[0].type : CMPI_null);
  for (CMPICount i = 0; i < body.count; ++i)
    array->body().elements[i] = copyData(*list->arena, body.items[i]);
  return array;
}

}  // namespace

const CMPIResultFT kResultFT = {CMPIVersion210, releaseHandle<Result>, noClone<Result>, returnData,
                                returnInstance, returnObjectPath,      returnDone,      returnError};

const CMPIEnumerationFT kEnumerationFT = {
    CMPIVersion210, releaseHandle<Enumeration>, noClone<Enumeration>, getNext, hasNext, toArray};

}  // namespace ZebManager
