// Reads schema files as the object manager does, so that a wrong one fails the build and not the first run.
#include <iostream>

#include "schema/ClassRepository.h"

int main(int argc, char** argv) {
  int status = 0;
  for (int i = 1; i < argc; ++i) {
    try {
      ZebManager::ClassRepository::fromFile(argv[i]);
    } catch (const ZebManager::SchemaError& error) {
      std::cerr << error.what() << '\n';
      status = 1;
    }
  }
  return status;
}
