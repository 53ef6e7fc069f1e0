#include "Support/Updates/ZipUnpacking.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ranges>

#include "Support/Updates/ArchiveTree.h"
#include "Support/Updates/FileBytes.h"
#include "Support/Updates/ZipContents.h"

namespace orvel {

namespace {

constexpr mode_t kPermissions = 0777;

bool makeFile(int archive, int folder, const ArchiveTree::Item& item) {
  const FileDescriptor file(openat(folder, item.path.c_str(),
                                   O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  return file &&
         readZipContents(archive, *item.entry,
                         [&](std::string_view bytes) { return writeAll(file.get(), bytes); }) &&
         fchmod(file.get(), item.mode & kPermissions) == 0;
}

bool make(int archive, int folder, const ArchiveTree::Item& item) {
  if (S_ISDIR(item.mode)) return mkdirat(folder, item.path.c_str(), 0700) == 0;
  if (S_ISLNK(item.mode)) return symlinkat(item.target.c_str(), folder, item.path.c_str()) == 0;
  return makeFile(archive, folder, item);
}

}  // namespace

bool unpackZip(const std::filesystem::path& archive, const std::filesystem::path& folder) {
  const FileDescriptor file(open(archive.c_str(), O_RDONLY | O_CLOEXEC));
  const FileDescriptor into(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!file || !into) return false;
  const auto entries = readZipDirectory(file.get());
  if (!entries) return false;
  const auto tree = ArchiveTree::make(file.get(), *entries);
  if (!tree) return false;
  for (const auto& [path, item] : tree->items())
    if (!make(file.get(), into.get(), item)) return false;
  // Last, and from within: what is in a folder is written whatever its mode is to be.
  for (const auto& [path, item] : tree->items() | std::views::reverse)
    if (S_ISDIR(item.mode) && fchmodat(into.get(), path.c_str(), item.mode & kPermissions, 0) != 0)
      return false;
  return true;
}

}  // namespace orvel
