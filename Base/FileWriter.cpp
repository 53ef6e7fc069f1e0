#include "Base/FileWriter.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

namespace orvel {

struct FileWriter::State {
  struct Request {
    MakeBytes makeBytes;  // empty: remove the file
    Completion completion;
  };
  struct Delivery {
    Completion completion;
    WriteResult result;
  };

  explicit State(std::shared_ptr<FileSystem> system) : files(std::move(system)) {}

  // Carries out one waiting request on the calling thread. Answers false when none is waiting.
  bool carryOutOne();
  void deliver();

  const std::shared_ptr<FileSystem> files;
  std::mutex mutex;
  std::condition_variable changed;
  std::map<std::filesystem::path, Request> waiting;
  std::set<std::filesystem::path> underWay;
  std::vector<Delivery> deliveries;
};

bool FileWriter::State::carryOutOne() {
  std::unique_lock lock(mutex);
  auto next = waiting.begin();
  while (next != waiting.end() && underWay.contains(next->first)) ++next;
  if (next == waiting.end()) return false;
  auto job = waiting.extract(next);
  underWay.insert(job.key());
  lock.unlock();

  const Request& request = job.mapped();
  const std::error_code error = request.makeBytes
                                    ? writeAtomically(*files, job.key(), request.makeBytes())
                                    : files->remove(job.key());

  lock.lock();
  underWay.erase(job.key());
  deliveries.push_back(
      {std::move(job.mapped().completion),
       {error ? WriteResult::Outcome::Failed : WriteResult::Outcome::Done, error}});
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
}

void FileWriter::write(std::filesystem::path path, MakeBytes makeBytes, Completion completion) {
  request(std::move(path), std::move(makeBytes), std::move(completion));
}

void FileWriter::remove(std::filesystem::path path, Completion completion) {
  request(std::move(path), {}, std::move(completion));
}

void FileWriter::request(std::filesystem::path path, MakeBytes makeBytes, Completion completion) {
  {
    const std::lock_guard lock(state_->mutex);
    State::Request& request = state_->waiting[std::move(path)];
    if (request.completion)
      state_->deliveries.push_back(
          {std::move(request.completion), {WriteResult::Outcome::Overtaken, {}}});
    request = {std::move(makeBytes), std::move(completion)};
  }
  scheduler_.runInBackground(
      [state = state_] {
        while (state->carryOutOne()) {
        }
      },
      [state = state_] { state->deliver(); }, WorkPriority::UserInitiated);
}

FileWriter::~FileWriter() {
  const std::lock_guard lock(state_->mutex);
  state_->waiting.clear();
}

bool FileWriter::drain(Duration deadline) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + deadline;
  const auto isIdle = [this] { return state_->underWay.empty(); };
  bool isDone = false;
  for (;;) {
    while (Clock::now() < end && state_->carryOutOne()) {
    }
    std::unique_lock lock(state_->mutex);
    isDone = state_->changed.wait_until(lock, end, isIdle) && state_->waiting.empty();
    if (isDone || Clock::now() >= end) break;
  }
  state_->deliver();
  return isDone;
}

}  // namespace orvel
