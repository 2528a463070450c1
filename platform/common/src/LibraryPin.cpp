#include "common/LibraryPin.h"

#include <dlfcn.h>

namespace ZEB {

void keepLibraryMapped() {
  Dl_info here{};
  if (dladdr(reinterpret_cast<const void*>(&keepLibraryMapped), &here) != 0 && here.dli_fname) {
    dlopen(here.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
  }
}

}  // namespace ZEB
