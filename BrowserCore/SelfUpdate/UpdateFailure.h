#pragma once

#include <string_view>

namespace orvel {

// Why a release is not installed by the program itself.
enum class UpdateFailure {
  cannotReplaceApp,  // the running application stands where it can't be replaced
  notOffered,        // no archive or signature, an archive not over https, or no identifier
  badDownload,       // the archive's response is no HTTP response, or its status isn't 200
  badSignature,      // key, signature or archive unreadable, or the signature doesn't verify
  unpackFailed,      // the archive can't be unpacked
  wrongArchive,      // the archive doesn't hold exactly one item, or that is no application bundle
  wrongApp,          // the bundle's information can't be read, or its identifier differs
  wrongBuild,        // the bundle's build differs from the signed one
  badCodeSignature,  // the bundle is not what was signed
};

// The case's name, for the log and for other programs.
[[nodiscard]] std::string_view nameOf(UpdateFailure failure);

}  // namespace orvel
