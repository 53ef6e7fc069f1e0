#include "Support/Updates/FileBytes.h"

#include <fcntl.h>
#include <sodium/crypto_hash_sha256.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <vector>

namespace orvel {

namespace fs = std::filesystem;

namespace {

constexpr size_t kChunk = 1u << 20;

// What `read` or `write` came to, which a signal may interrupt.
template <typename Call>
ssize_t persistently(Call call) {
  for (;;) {
    const ssize_t count = call();
    if (count >= 0 || errno != EINTR) return count;
  }
}

}  // namespace

bool readAt(int file, uint64_t offset, char* bytes, size_t size) {
  while (size > 0) {
    const ssize_t count =
        persistently([&] { return pread(file, bytes, size, static_cast<off_t>(offset)); });
    if (count <= 0) return false;
    bytes += count;
    offset += static_cast<uint64_t>(count);
    size -= static_cast<size_t>(count);
  }
  return true;
}

std::optional<std::string> readAll(int file, size_t limit) {
  std::string bytes;
  char chunk[16 << 10];
  for (;;) {
    const ssize_t count = persistently([&] { return read(file, chunk, sizeof chunk); });
    if (count < 0) return std::nullopt;
    if (count == 0) return bytes;
    bytes.append(chunk, static_cast<size_t>(count));
    if (bytes.size() > limit) return std::nullopt;
  }
}

bool writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = persistently([&] { return write(file, bytes.data(), bytes.size()); });
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<size_t>(count));
  }
  return true;
}

std::optional<std::string> sha256(int file) {
  crypto_hash_sha256_state state;
  crypto_hash_sha256_init(&state);
  std::vector<unsigned char> chunk(kChunk);
  for (;;) {
    const ssize_t count = persistently([&] { return read(file, chunk.data(), chunk.size()); });
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    crypto_hash_sha256_update(&state, chunk.data(), static_cast<size_t>(count));
  }
  std::string digest(crypto_hash_sha256_BYTES, '\0');
  crypto_hash_sha256_final(&state, reinterpret_cast<unsigned char*>(digest.data()));
  return digest;
}

FileDescriptor openRegularFile(int folder, const std::string& name) {
  FileDescriptor file(
      openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat info {};
  if (!file || fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) return {};
  return file;
}

void removeAll(const fs::path& path) {
  std::error_code ignored;
  // What is in a folder can be removed by who may enter it and write to it.
  std::vector<fs::path> folders{path};
  while (!folders.empty()) {
    const fs::path folder = std::move(folders.back());
    folders.pop_back();
    if (!fs::is_directory(fs::symlink_status(folder, ignored))) continue;
    fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
    for (fs::directory_iterator entry(folder, ignored), end; entry != end; entry.increment(ignored))
      if (entry->is_directory(ignored) && !entry->is_symlink(ignored))
        folders.push_back(entry->path());
  }
  fs::remove_all(path, ignored);
}

}  // namespace orvel
