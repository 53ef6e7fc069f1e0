#pragma once

#include <filesystem>

#include "BrowserCore/SelfUpdate/SigningKeys.h"

// The code signature of an application bundle: the file "Contents/CodeSignature", which holds a
// signature in base64 on its first line and behind it what is signed, the bundle's manifest. The
// manifest has a line for each folder and file with its permission bits, and for each link with its
// target, in the order of their paths; of a file it has the SHA-256. It covers the bundle's own
// folder, and everything in it but that one file. Bytes at or below 0x20, 0x7f and "%" are
// percent-encoded. While the file is written it has ".new" behind its name.
namespace orvel::BundleManifest {

// Writes the file; nothing else of the bundle changes, and nothing at all on a failure. False when
// this is no bundle, a folder with the folder "Contents"; when something in it is no file, folder
// or link, or a link leads out of it; or when something cannot be read or written.
[[nodiscard]] bool sign(const std::filesystem::path& app, const SecretKey& key);

// Whether the bundle is exactly what the key's owner signed.
[[nodiscard]] bool isValid(const std::filesystem::path& app, const PublicKey& key);

}  // namespace orvel::BundleManifest
