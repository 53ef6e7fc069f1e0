#include "Tools/Operations.h"

namespace orvel::tools {

void addSessionOperations(Operations&) {}

}  // namespace orvel::tools
