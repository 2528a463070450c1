#pragma once

#include "cmpi/cmpi.h"

namespace ZEB::test {

/// What the tables of a `FakeBroker` point to, but for the making of objects.
struct FakeServices {
  static void fill(CMPIBrokerFT& services, CMPIBrokerEncFT& factories, CMPIBrokerMemFT& memory);

 private:
  static CMPIContext* prepareAttachThread(const CMPIBroker*, const CMPIContext*);
  static CMPIStatus attachThread(const CMPIBroker*, const CMPIContext*);
  static CMPIStatus detachThread(const CMPIBroker*, const CMPIContext*);
  static CMPIStatus deliverIndication(const CMPIBroker*, const CMPIContext*, const char* nameSpace,
                                      const CMPIInstance*);
  static CMPIData invokeMethod(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char* name,
                               const CMPIArgs* in, CMPIArgs* out, CMPIStatus*);
  static CMPIBoolean classPathIsA(const CMPIBroker*, const CMPIObjectPath*, const char* ancestor,
                                  CMPIStatus*);
  static CMPIGcStat* mark(const CMPIBroker*, CMPIStatus*);
  static CMPIStatus release(const CMPIBroker*, const CMPIGcStat*);
};

}  // namespace ZEB::test
