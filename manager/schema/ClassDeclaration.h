// One class as its MOF declares it, before anything is known of its superclass.
#pragma once

#include <string>
#include <vector>

#include "schema/ClassRepository.h"

namespace ZebManager {

struct PropertyDeclaration {
  PropertyDef property;
  bool overrides = false;
  int line = 0;
};

struct ClassDeclaration {
  std::string name;
  std::string superclass;
  std::string description;
  std::string version;
  bool abstract = false;
  bool association = false;
  bool indication = false;
  std::vector<PropertyDeclaration> properties;
  std::vector<MethodDef> methods;
  std::string file;
  int line = 0;
};

}  // namespace ZebManager
