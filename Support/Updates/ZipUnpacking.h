#pragma once

#include <filesystem>

namespace orvel {

// Unpacks a zip archive into `folder`, which exists and is empty: whole, or else not: false, and
// what is there by then is to be removed by the caller. Nothing is written before every entry has
// been looked at.
//
// Names stay the bytes that they are, and permission bits (0777) those of the archive, whatever the
// locale and umask; a folder without an entry of its own gets 0755. Links are made as links.
//
// Refused is an archive with an entry that is absolute or whose path has a piece that is empty, "."
// or ".."; a backslash or a zero byte in a name; something below a link or a file; a device, pipe
// or socket; a link that leads out of the item at the top in which it stands; two entries of one
// path, or of paths that differ by the case of letters only; and what is encrypted, packed other
// than by deflating, damaged, more than 65,535 entries, 2 GiB, or 64 MiB of paths.
[[nodiscard]] bool unpackZip(const std::filesystem::path& archive,
                             const std::filesystem::path& folder);

}  // namespace orvel
