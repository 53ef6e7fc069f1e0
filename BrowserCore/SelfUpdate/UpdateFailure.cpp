#include "BrowserCore/SelfUpdate/UpdateFailure.h"

namespace orvel {

std::string_view nameOf(UpdateFailure failure) {
  switch (failure) {
    case UpdateFailure::cannotReplaceApp:
      return "cannotReplaceApp";
    case UpdateFailure::notOffered:
      return "notOffered";
    case UpdateFailure::badDownload:
      return "badDownload";
    case UpdateFailure::badSignature:
      return "badSignature";
    case UpdateFailure::unpackFailed:
      return "unpackFailed";
    case UpdateFailure::wrongArchive:
      return "wrongArchive";
    case UpdateFailure::wrongApp:
      return "wrongApp";
    case UpdateFailure::wrongBuild:
      return "wrongBuild";
    case UpdateFailure::badCodeSignature:
      return "badCodeSignature";
  }
  return "";
}

}  // namespace orvel
