#include "Base/FileSystem.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "Base/GRef.h"
#include "Base/Log.h"

namespace orvel {

namespace fs = std::filesystem;

namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

class Descriptor {
 public:
  Descriptor(const fs::path& path, int flags)
      : value_(open(path.c_str(), flags | O_CLOEXEC, S_IRUSR | S_IWUSR)) {}
  ~Descriptor() {
    if (value_ >= 0) ::close(value_);
  }
  Descriptor(const Descriptor&) = delete;
  explicit operator bool() const { return value_ >= 0; }
  int get() const { return value_; }

  // Network file systems report a failed write only here.
  std::error_code close() {
    return ::close(std::exchange(value_, -1)) == 0 ? std::error_code() : lastError();
  }

 private:
  int value_;
};

class Disk final : public FileSystem {
 public:
  FileContents read(const fs::path& path, uint64_t limit) override {
    const auto failed = [](std::errc error) { return Failure(std::make_error_code(error)); };
    // O_NONBLOCK: a pipe put in the file's place must not hold the program up.
    const Descriptor file(path, O_RDONLY | O_NONBLOCK);
    struct stat status {};
    if (!file || fstat(file.get(), &status) != 0) return Failure(lastError());
    if (S_ISDIR(status.st_mode)) return failed(std::errc::is_a_directory);
    if (!S_ISREG(status.st_mode)) return failed(std::errc::not_supported);
    if (static_cast<uint64_t>(status.st_size) > limit) return failed(std::errc::file_too_large);
    std::string bytes(static_cast<size_t>(status.st_size), '\0');
    size_t filled = 0;
    while (filled < bytes.size()) {
      const ssize_t count = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return Failure(lastError());
      if (count == 0) break;
      filled += static_cast<size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
  }

  std::vector<std::string> list(const fs::path& folder) override {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
      names.push_back(entry->path().filename().string());
    return names;
  }

  bool exists(const fs::path& path) override {
    std::error_code error;
    return fs::exists(path, error);
  }

  std::optional<Date> modificationDate(const fs::path& path) override {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    const timespec& time = status.st_mtim;
    return Date(std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_nsec / 1000));
  }

  std::optional<uint64_t> freeSpace(const fs::path& folder) override {
    std::error_code error;
    const fs::space_info space = fs::space(folder, error);
    return error ? std::nullopt : std::optional<uint64_t>(space.available);
  }

  std::error_code write(const fs::path& path, std::string_view bytes) override {
    Descriptor file(path, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW);
    if (!file) return lastError();
    while (!bytes.empty()) {
      const ssize_t count = ::write(file.get(), bytes.data(), bytes.size());
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return lastError();
      bytes.remove_prefix(static_cast<size_t>(count));
    }
    return file.close();
  }

  std::error_code sync(const fs::path& path) override { return syncWith(path, O_RDONLY); }

  std::error_code rename(const fs::path& from, const fs::path& to) override {
    return ::rename(from.c_str(), to.c_str()) == 0 ? std::error_code() : lastError();
  }

  std::error_code renameToNew(const fs::path& from, const fs::path& to) override {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
    if (errno != EINVAL && errno != ENOSYS) return lastError();
    // A file system without it: one that has no links either can only be asked beforehand.
    if (link(from.c_str(), to.c_str()) == 0) return remove(from);
    if (errno != EPERM && errno != EOPNOTSUPP) return lastError();
    return exists(to) ? std::make_error_code(std::errc::file_exists) : rename(from, to);
  }

  std::error_code syncFolder(const fs::path& folder) override {
    return syncWith(folder, O_RDONLY | O_DIRECTORY);
  }

  std::error_code remove(const fs::path& path) override {
    return unlink(path.c_str()) == 0 || errno == ENOENT ? std::error_code() : lastError();
  }

  std::error_code createFolders(const fs::path& folder) override {
    fs::path made;
    for (const fs::path& part : folder) {
      made /= part;
      if (mkdir(made.c_str(), S_IRWXU) != 0 && errno != EEXIST) return lastError();
    }
    return {};
  }

  Result<void, std::string> writeForUser(const fs::path& path, std::string_view bytes) override {
    const auto file = GRef<GFile>::adopt(g_file_new_for_path(path.c_str()));
    GError* error = nullptr;
    if (g_file_replace_contents(file.get(), bytes.data(), bytes.size(), nullptr, FALSE,
                                G_FILE_CREATE_NONE, nullptr, nullptr, &error))
      return {};
    return Failure(GErrorRef(error)->message);
  }

 private:
  static std::error_code syncWith(const fs::path& path, int flags) {
    const Descriptor file(path, flags);
    return file && fsync(file.get()) == 0 ? std::error_code() : lastError();
  }
};

}  // namespace

bool isMissing(const std::error_code& error) {
  return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

std::shared_ptr<FileSystem> FileSystem::disk() { return std::make_shared<Disk>(); }

std::error_code writeAtomically(FileSystem& files, const fs::path& path, std::string_view bytes) {
  fs::path temporary = path;
  temporary += ".new";
  std::error_code error = files.write(temporary, bytes);
  if (error == std::errc::no_such_file_or_directory) {
    if (error = files.createFolders(path.parent_path()); error) return error;
    error = files.write(temporary, bytes);
  }
  if (!error) error = files.sync(temporary);
  if (!error) error = files.rename(temporary, path);
  if (error) {
    files.remove(temporary);
    return error;
  }
  if (const auto unsynced = files.syncFolder(path.parent_path()))
    Log::app.error("Couldn't sync the folder of {}: {}", path.filename().string(),
                   unsynced.message());
  return {};
}

}  // namespace orvel
