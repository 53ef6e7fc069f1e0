#include <cstdio>

#include "Tools/Operations.h"

namespace orvel::tools {

int convertFilters(int, char**) {
  std::fputs("orvel-core: convert-filters is not built yet\n", stderr);
  return 2;
}

}  // namespace orvel::tools
