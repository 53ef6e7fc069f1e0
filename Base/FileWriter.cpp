#include "Base/FileWriter.h"

#include <algorithm>
#include <condition_variable>
#include <list>
#include <mutex>
#include <utility>

namespace orvel {

using Together = std::vector<FileWriter::Request>;

struct FileWriter::State {
  struct Delivery {
    Completion completion;
    WriteResult result;
  };

  explicit State(std::shared_ptr<FileSystem> system) : files(std::move(system)) {}

  // Puts the request where the one that it overtakes was, or behind all others.
  void add(Together request);
  // Carries out one waiting request on the calling thread, that for `first` before others. Answers
  // false when none is waiting.
  bool carryOutOne(const std::filesystem::path& first = {});
  void deliver();

  const std::shared_ptr<FileSystem> files;
  std::mutex mutex;
  std::condition_variable changed;
  std::list<Together> waiting;
  std::list<std::filesystem::path> underWay;
  std::vector<Delivery> deliveries;

 private:
  void overtake(Request& former) {
    deliveries.push_back({std::move(former.completion), Written::Overtaken});
  }
  bool isUnderWay(const Together& request) const;
};

namespace {

auto find(Together& request, const std::filesystem::path& path) {
  return std::ranges::find(request, path, &FileWriter::Request::path);
}

}  // namespace

void FileWriter::State::add(Together request) {
  auto place = waiting.end();
  for (auto former = waiting.begin(); former != waiting.end();) {
    const bool holdsAll = std::ranges::all_of(
        request, [&](const Request& one) { return find(*former, one.path) != former->end(); });
    if (holdsAll && former->size() > request.size()) {
      // The rest still belongs to it.
      for (Request& one : request) {
        Request& same = *find(*former, one.path);
        overtake(same);
        same = std::move(one);
      }
      return;
    }
    const size_t count = former->size();
    std::erase_if(*former, [&](Request& one) {
      const bool isOvertaken = find(request, one.path) != request.end();
      if (isOvertaken) overtake(one);
      return isOvertaken;
    });
    if (place == waiting.end() && former->size() < count) place = waiting.emplace(former);
    former = former->empty() ? waiting.erase(former) : std::next(former);
  }
  if (place == waiting.end()) place = waiting.emplace(place);
  *place = std::move(request);
}

bool FileWriter::State::isUnderWay(const Together& request) const {
  return std::ranges::any_of(request, [&](const Request& one) {
    return std::ranges::find(underWay, one.path) != underWay.end();
  });
}

bool FileWriter::State::carryOutOne(const std::filesystem::path& first) {
  std::unique_lock lock(mutex);
  const auto isFree = [&](const Together& request) { return !isUnderWay(request); };
  auto next = std::ranges::find_if(waiting, [&](Together& request) {
    return find(request, first) != request.end() && isFree(request);
  });
  if (next == waiting.end()) next = std::ranges::find_if(waiting, isFree);
  if (next == waiting.end()) return false;
  Together request = std::move(*next);
  waiting.erase(next);
  for (const Request& one : request) underWay.push_back(one.path);
  std::vector<Delivery> results;
  lock.unlock();

  std::error_code error;
  for (Request& one : request) {
    if (!error) error = one.carryOut(*files);
    results.push_back({std::move(one.completion),
                       error ? WriteResult(Failure(error)) : WriteResult(Written::Done)});
  }

  lock.lock();
  for (const Request& one : request) underWay.erase(std::ranges::find(underWay, one.path));
  std::ranges::move(results, std::back_inserter(deliveries));
  changed.notify_all();
  return true;
}

void FileWriter::State::deliver() {
  std::unique_lock lock(mutex);
  const auto due = std::exchange(deliveries, {});
  lock.unlock();
  for (const Delivery& delivery : due)
    if (delivery.completion) delivery.completion(delivery.result);
}

FileWriter::FileWriter(Scheduler& scheduler, std::shared_ptr<FileSystem> files)
    : scheduler_(scheduler), state_(std::make_shared<State>(std::move(files))) {}

FileSystem& FileWriter::files() const { return *state_->files; }

void FileWriter::write(std::filesystem::path path, std::string bytes, Completion completion) {
  write(
      std::move(path), [bytes = std::move(bytes)]() mutable { return std::move(bytes); },
      std::move(completion));
}  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the function owns what it holds

void FileWriter::write(std::filesystem::path path, MakeBytes makeBytes, Completion completion) {
  carryOut({writing(std::move(path), std::move(makeBytes), std::move(completion))});
}

void FileWriter::remove(std::filesystem::path path, Completion completion) {
  carryOut(
      {{path, [path](FileSystem& files) { return files.remove(path); }, std::move(completion)}});
}

FileWriter::Request FileWriter::writing(std::filesystem::path path, MakeBytes makeBytes,
                                        Completion completion) {
  auto write = [path, makeBytes = std::move(makeBytes)](FileSystem& files) {
    return writeAtomically(files, path, makeBytes());
  };
  return {std::move(path), std::move(write), std::move(completion)};
}

void FileWriter::carryOut(std::vector<Request> together) {
  {
    const std::lock_guard lock(state_->mutex);
    state_->add(std::move(together));
  }
  scheduler_.runInBackground(
      [state = state_] {
        while (state->carryOutOne()) {
        }
      },
      [state = state_] { state->deliver(); }, WorkPriority::Files);
}

FileWriter::~FileWriter() {
  const std::lock_guard lock(state_->mutex);
  state_->waiting.clear();
}

bool FileWriter::drain(Duration deadline, const std::filesystem::path& first) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + deadline;
  const auto isIdle = [this] { return state_->underWay.empty(); };
  bool isDone = false;
  for (;;) {
    while (Clock::now() < end && state_->carryOutOne(first)) {
    }
    std::unique_lock lock(state_->mutex);
    isDone = state_->changed.wait_until(lock, end, isIdle) && state_->waiting.empty();
    if (isDone || Clock::now() >= end) break;
  }
  state_->deliver();
  return isDone;
}

}  // namespace orvel
