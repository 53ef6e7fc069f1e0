#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "Base/Scheduler.h"

namespace orvel {

// The answers that a page owes. Each is given exactly once, on a later turn: that of the page, or
// that of a failure when the page does not take the question up in time, goes, or loses it.
class PendingAnswers {
 public:
  // What takes a question along: the view, or already the page that it was put to.
  enum class EndsWith { View, Page };

  // While `mayTakeLonger` holds no time counts.
  PendingAnswers(Scheduler& scheduler, std::function<bool()> mayTakeLonger)
      : scheduler_(scheduler),
        mayTakeLonger_(std::make_shared<std::function<bool()>>(std::move(mayTakeLonger))) {}
  PendingAnswers(const PendingAnswers&) = delete;
  ~PendingAnswers() { fail(EndsWith::View); }

  template <class T>
  struct Expected {
    // The page's answer; a second one does nothing.
    std::function<void(T)> give;
    // The page has taken the question up: it may think as long as it likes.
    std::function<void()> takenUp;
  };

  template <class T>
  Expected<T> expect(std::function<void(T)> answer, T failure, EndsWith end = EndsWith::View) {
    auto entry = std::make_shared<Entry<T>>(scheduler_, std::move(answer), std::move(failure), end);
    std::erase_if(entries_, [](const auto& weak) { return weak.expired(); });
    entries_.push_back(entry);
    entry->limit = scheduler_.start(endUnanswered(entry, mayTakeLonger_));
    return {[entry](T value) { entry->give(std::move(value)); },
            [entry] { entry->limit.cancel(); }};
  }

  // Fails what ends so: with the view, all of it.
  void fail(EndsWith end);

 private:
  struct AnyEntry {
    explicit AnyEntry(EndsWith end) : endsWith(end) {}
    virtual ~AnyEntry() = default;
    virtual void fail() = 0;

    const EndsWith endsWith;
    TaskHandle limit;
  };

  template <class T>
  struct Entry final : AnyEntry {
    Entry(Scheduler& used, std::function<void(T)> given, T otherwise, EndsWith end)
        : AnyEntry(end), scheduler(used), answer(std::move(given)), failure(std::move(otherwise)) {}
    // Nobody is left who could answer.
    ~Entry() override { give(std::move(failure)); }
    void fail() override { give(failure); }
    void give(T value) {
      limit.cancel();
      if (auto asked = std::exchange(answer, nullptr))
        scheduler.post([asked = std::move(asked), value = std::move(value)]() mutable {
          asked(std::move(value));
        });
    }

    Scheduler& scheduler;
    std::function<void(T)> answer;
    T failure;
  };

  static Task<> endUnanswered(std::weak_ptr<AnyEntry> entry,
                              std::weak_ptr<std::function<bool()>> mayTakeLonger);

  Scheduler& scheduler_;
  std::vector<std::weak_ptr<AnyEntry>> entries_;
  std::shared_ptr<std::function<bool()>> mayTakeLonger_;
};

}  // namespace orvel
