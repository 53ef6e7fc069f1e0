// An archive of an update, all but its writing.

#include <sys/mman.h>
#include <sys/stat.h>

#include "Fuzzers/Fuzz.h"
#include "Support/Updates/ArchiveTree.h"
#include "Support/Updates/FileBytes.h"
#include "Support/Updates/ZipContents.h"

void fuzz(std::string_view input) {
  const orvel::FileDescriptor archive(memfd_create("archive", MFD_CLOEXEC));
  require(archive && orvel::writeAll(archive.get(), input));
  const auto entries = orvel::readZipDirectory(archive.get());
  if (!entries) return;
  const auto tree = orvel::ArchiveTree::make(archive.get(), *entries);
  if (!tree) return;
  for (const auto& [path, item] : tree->items()) {
    require(!path.empty() && path.front() != '/' && ("/" + path + "/").find("/../") == path.npos);
    require(S_ISDIR(item.mode) || item.entry);
    if (const size_t slash = path.rfind('/'); slash != path.npos)
      require(S_ISDIR(tree->items().at(path.substr(0, slash)).mode));
    if (!S_ISREG(item.mode)) continue;
    // A long one of few bytes is not worth the wait.
    uint64_t left = std::min<uint64_t>(item.entry->size, 1u << 20);
    const bool isWhole = orvel::readZipContents(archive.get(), *item.entry, [&](auto bytes) {
      const bool fits = bytes.size() <= left;
      left -= fits ? bytes.size() : 0;
      return fits;
    });
    require(!isWhole || left == 0);
  }
}
