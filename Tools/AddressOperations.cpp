#include "Tools/Operations.h"

namespace orvel::tools {

void addAddressOperations(Operations&) {}

}  // namespace orvel::tools
