#include "App/UpdateSource.h"

namespace orvel::UpdateSource {

URL feed() { return *URL::parse("https://" ORVEL_UPDATE_HOST "/version.json"); }

std::string publicKey() { return ORVEL_UPDATE_KEY; }

}  // namespace orvel::UpdateSource
