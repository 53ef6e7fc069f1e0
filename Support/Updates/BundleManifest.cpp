#include "Support/Updates/BundleManifest.h"

#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <limits.h>
#include <sodium/utils.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Support/Updates/FileBytes.h"
#include "Support/Updates/LinkTarget.h"

namespace orvel::BundleManifest {

namespace {

constexpr char kSignature[] = "Contents/CodeSignature";
constexpr char kNewSignature[] = "Contents/CodeSignature.new";
constexpr std::string_view kTitle = "orvel-bundle-1\n";
constexpr size_t kMaxSignatureBytes = 64u << 20;

std::string encoded(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte <= 0x20 || byte == 0x7f || byte == '%')
      text += fmt::format("%{:02X}", byte);
    else
      text += c;
  }
  return text;
}

std::optional<std::string> targetOf(int bundle, const std::string& path) {
  std::string target(PATH_MAX, '\0');
  const ssize_t size = readlinkat(bundle, path.c_str(), target.data(), target.size());
  if (size < 0 || static_cast<size_t>(size) == target.size()) return std::nullopt;
  target.resize(static_cast<size_t>(size));
  return target;
}

std::optional<std::string> digestOf(int bundle, const std::string& path) {
  const FileDescriptor file = openRegularFile(bundle, path);
  const auto digest = file ? sha256(file.get()) : std::nullopt;
  if (!digest) return std::nullopt;
  std::string text(2 * digest->size() + 1, '\0');
  sodium_bin2hex(text.data(), text.size(), reinterpret_cast<const unsigned char*>(digest->data()),
                 digest->size());
  text.pop_back();  // the terminating zero
  return text;
}

std::optional<std::vector<std::string>> namesIn(int bundle, const std::string& path) {
  const int number = openat(bundle, path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(number < 0 ? nullptr : fdopendir(number),
                                                   closedir);
  if (!folder) return std::nullopt;
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* entry = readdir(folder.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  if (errno != 0) return std::nullopt;
  return names;
}

// The line of what stands at the path; absent when it may not be in a bundle, or not be read.
std::optional<std::string> lineOf(int bundle, const std::string& path, const struct stat& info) {
  const std::string name = encoded(path);
  const uint32_t permissions = info.st_mode & 0777;
  if (S_ISDIR(info.st_mode)) return fmt::format("folder {:04o} {}\n", permissions, name);
  if (S_ISREG(info.st_mode)) {
    const auto digest = digestOf(bundle, path);
    if (!digest) return std::nullopt;
    return fmt::format("file {:04o} {} {}\n", permissions, *digest, name);
  }
  const auto target = S_ISLNK(info.st_mode) ? targetOf(bundle, path) : std::nullopt;
  if (!target || leadsOut(path, *target, [&](const auto& link) { return targetOf(bundle, link); }))
    return std::nullopt;
  return fmt::format("link {} {}\n", encoded(*target), name);
}

// Absent when the bundle holds what none may hold, or cannot be read.
std::optional<std::string> manifestOf(int bundle) {
  std::map<std::string, std::string> lines;
  std::vector<std::string> folders{"."};
  struct stat root {};
  if (fstat(bundle, &root) != 0) return std::nullopt;
  lines.emplace("", *lineOf(bundle, ".", root));
  while (!folders.empty()) {
    const std::string folder = std::move(folders.back());
    folders.pop_back();
    const auto names = namesIn(bundle, folder);
    if (!names) return std::nullopt;
    for (const std::string& name : *names) {
      std::string path = folder == "." ? name : fmt::format("{}/{}", folder, name);
      struct stat info {};
      if (fstatat(bundle, path.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
      if (path == kSignature) {
        if (S_ISREG(info.st_mode)) continue;
        return std::nullopt;
      }
      auto line = lineOf(bundle, path, info);
      if (!line) return std::nullopt;
      if (S_ISDIR(info.st_mode)) folders.push_back(path);
      lines.emplace(std::move(path), *std::move(line));
    }
  }
  std::string manifest(kTitle);
  for (const auto& [path, line] : lines) manifest += line;
  return manifest;
}

// No descriptor when this is no bundle.
FileDescriptor openBundle(const std::filesystem::path& app) {
  constexpr int kFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  FileDescriptor bundle(open(app.c_str(), kFolder));
  const int number = bundle ? openat(bundle.get(), "Contents", kFolder) : -1;  // no text
  const FileDescriptor contents(number);
  return contents ? std::move(bundle) : FileDescriptor();
}

bool write(int bundle, const std::string& bytes) {
  const FileDescriptor file(
      openat(bundle, kNewSignature, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  return file && writeAll(file.get(), bytes) && fchmod(file.get(), 0644) == 0 &&
         fsync(file.get()) == 0 && renameat(bundle, kNewSignature, bundle, kSignature) == 0;
}

}  // namespace

bool sign(const std::filesystem::path& app, const SecretKey& key) {
  const FileDescriptor bundle = openBundle(app);
  if (!bundle) return false;
  unlinkat(bundle.get(), kNewSignature, 0);  // of a signing that was killed
  const auto manifest = manifestOf(bundle.get());
  if (!manifest) return false;
  if (write(bundle.get(), key.signature(*manifest) + "\n" + *manifest)) return true;
  unlinkat(bundle.get(), kNewSignature, 0);
  return false;
}

bool isValid(const std::filesystem::path& app, const PublicKey& key) {
  const FileDescriptor bundle = openBundle(app);
  const FileDescriptor file = bundle ? openRegularFile(bundle.get(), kSignature) : FileDescriptor();
  const auto signedText = file ? readAll(file.get(), kMaxSignatureBytes) : std::nullopt;
  if (!signedText) return false;
  const size_t lineEnd = signedText->find('\n');
  if (lineEnd == std::string::npos) return false;
  const auto signature = std::string_view(*signedText).substr(0, lineEnd);
  const auto manifest = std::string_view(*signedText).substr(lineEnd + 1);
  return key.isValidSignature(signature, manifest) && manifestOf(bundle.get()) == manifest;
}

}  // namespace orvel::BundleManifest
