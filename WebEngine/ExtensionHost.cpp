#include "WebEngine/ExtensionHost.h"

namespace orvel {

Task<> ExtensionHost::loadInstalled() { co_return; }

}  // namespace orvel
