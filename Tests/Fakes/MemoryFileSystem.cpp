#include "Tests/Fakes/MemoryFileSystem.h"

#include <cerrno>

namespace orvel::test {

namespace fs = std::filesystem;

namespace {

bool isIn(const std::string& path, const fs::path& folder) {
  return fs::path(path).parent_path() == folder;
}

}  // namespace

MemoryFileSystem::Fault MemoryFileSystem::nextStep() {
  if (isDead_) return Fault::Killed;
  const int step = steps_++;
  const Fault fault = faultyStep_ == -1 || step == faultyStep_ ? fault_ : Fault::None;
  if (fault == Fault::Killed) isDead_ = true;
  return fault;
}

std::error_code MemoryFileSystem::fail(Fault fault) const {
  return {fault == Fault::DiskFull ? ENOSPC : EIO, std::generic_category()};
}

void MemoryFileSystem::failAtStep(int step, Fault fault) {
  const std::lock_guard lock(mutex_);
  faultyStep_ = steps_ + step;
  fault_ = fault;
}

void MemoryFileSystem::failAlways(Fault fault) {
  const std::lock_guard lock(mutex_);
  faultyStep_ = -1;
  fault_ = fault;
}

FileContents MemoryFileSystem::read(const fs::path& path, uint64_t limit) {
  const std::lock_guard lock(mutex_);
  const auto failed = [](std::errc error) { return Failure(std::make_error_code(error)); };
  const auto file = seen_.find(path.string());
  if (file == seen_.end()) return failed(std::errc::no_such_file_or_directory);
  if (const auto why = unreadable.find(path.string()); why != unreadable.end())
    return failed(why->second);
  if (file->second.size() > limit) return failed(std::errc::file_too_large);
  return file->second;
}

Result<void, std::string> MemoryFileSystem::writeForUser(const fs::path& path,
                                                         std::string_view bytes) {
  if (const std::error_code error = write(path, bytes)) return Failure(error.message());
  return {};
}

std::vector<std::string> MemoryFileSystem::list(const fs::path& folder) {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> names;
  for (const auto& [path, bytes] : seen_)
    if (isIn(path, folder)) names.push_back(fs::path(path).filename().string());
  return names;
}

bool MemoryFileSystem::exists(const fs::path& path) {
  const std::lock_guard lock(mutex_);
  return seen_.contains(path.string()) || folders_.contains(path.string());
}

std::optional<Date> MemoryFileSystem::modificationDate(const fs::path& path) {
  const std::lock_guard lock(mutex_);
  const auto date = dates.find(path.string());
  return date == dates.end() ? std::nullopt : std::optional(date->second);
}

std::error_code MemoryFileSystem::write(const fs::path& path, std::string_view bytes) {
  if (beforeStep) beforeStep();
  const std::lock_guard lock(mutex_);
  if (!folders_.contains(path.parent_path().string()))
    return std::make_error_code(std::errc::no_such_file_or_directory);
  const bool wasDead = isDead_;
  const Fault fault = nextStep();
  if (wasDead || fault == Fault::InputOutput) return fail(fault);
  if (fault != Fault::None) bytes = bytes.substr(0, bytes.size() / 2);
  seen_[path.string()] = bytes;
  synced_.erase(path.string());
  return fault == Fault::None ? std::error_code() : fail(fault);
}

std::error_code MemoryFileSystem::change(const std::function<void()>& apply) {
  if (beforeStep) beforeStep();
  const std::lock_guard lock(mutex_);
  if (const Fault fault = nextStep(); fault != Fault::None) return fail(fault);
  apply();
  return {};
}

std::error_code MemoryFileSystem::sync(const fs::path& path) {
  return change([&] { synced_[path.string()] = seen_[path.string()]; });
}

std::error_code MemoryFileSystem::rename(const fs::path& from, const fs::path& to) {
  return change([&] {
    seen_[to.string()] = std::move(seen_[from.string()]);
    seen_.erase(from.string());
    synced_.erase(to.string());
    if (auto content = synced_.extract(from.string())) {
      content.key() = to.string();
      synced_.insert(std::move(content));
    }
  });
}

std::error_code MemoryFileSystem::renameToNew(const fs::path& from, const fs::path& to) {
  return exists(to) ? std::make_error_code(std::errc::file_exists) : rename(from, to);
}

std::error_code MemoryFileSystem::syncFolder(const fs::path& folder) {
  return change([&] {
    std::erase_if(durable_, [&](const auto& file) { return isIn(file.first, folder); });
    for (const auto& [path, bytes] : seen_)
      // A name whose contents were never synced survives as an empty file.
      if (isIn(path, folder)) durable_[path] = synced_.contains(path) ? synced_[path] : "";
  });
}

std::error_code MemoryFileSystem::remove(const fs::path& path) {
  return change([&] {
    seen_.erase(path.string());
    synced_.erase(path.string());
  });
}

std::error_code MemoryFileSystem::createFolders(const fs::path& folder) {
  return change([&] { addFolders(folder); });
}

void MemoryFileSystem::addFolders(const fs::path& folder) {
  for (fs::path part = folder; part != part.root_path(); part = part.parent_path())
    folders_.insert(part.string());
}

void MemoryFileSystem::restartAfterKill() {
  const std::lock_guard lock(mutex_);
  isDead_ = false;
  fault_ = Fault::None;
}

void MemoryFileSystem::restartAfterPowerCut() {
  const std::lock_guard lock(mutex_);
  seen_ = synced_ = durable_;
  restartAfterKill();
}

void MemoryFileSystem::put(const fs::path& path, std::string bytes) {
  const std::lock_guard lock(mutex_);
  addFolders(path.parent_path());
  seen_[path.string()] = synced_[path.string()] = durable_[path.string()] = std::move(bytes);
}

std::map<std::string, std::string> MemoryFileSystem::contents() const {
  const std::lock_guard lock(mutex_);
  return seen_;
}

}  // namespace orvel::test
