#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "Base/Transaction.h"

// Observation: values that know who read them, and effects that run again when what they read
// changed. Everything here belongs to the main thread.
namespace orvel {

class Effect;
class EffectState;
struct SourceLink;

// Why an effect runs: the latest animated change among those that woke it; absent on its first run
// and when none of the changes was animated.
struct Wake {
  std::optional<Transaction> transaction;
};

// What every Observable shares whatever its value: the list of effects that read it.
class ObservableBase {
 public:
  ObservableBase(const ObservableBase&) = delete;
  ObservableBase& operator=(const ObservableBase&) = delete;

 protected:
  ObservableBase() = default;
  ~ObservableBase();

  void recordRead() const;
  // Call before a write: an effect must not write the model.
  static void requireWritable();
  void notify();

 private:
  friend class EffectState;
  mutable SourceLink* readers_ = nullptr;
  mutable uint64_t lastRun_ = 0;
};

// Holds a value. Reading it inside an effect subscribes the effect; setting it to a value that
// `Equal` tells apart wakes the subscribers on the next flush. A setter that gets an equal value
// stores it and tells nobody. May die before or after its effects.
template <class T, class Equal = std::equal_to<T>>
class Observable : public ObservableBase {
 public:
  Observable() = default;
  explicit(false) Observable(T initial) : value_(std::move(initial)) {}

  const T& get() const {
    recordRead();
    return value_;
  }
  operator const T&() const { return get(); }
  const T& operator*() const { return get(); }
  const T* operator->() const { return &get(); }

  // The value without subscribing the running effect.
  const T& peek() const { return value_; }

  // Returns whether the new value differs from the old one.
  bool set(T next) {
    requireWritable();
    const bool isDifferent = !Equal{}(value_, next);
    // The old value dies after the new one is in place: its destructor may read this Observable.
    std::swap(value_, next);
    if (isDifferent) notify();
    return isDifferent;
  }
  Observable& operator=(T next) {
    set(std::move(next));
    return *this;
  }

  // Sets the value to a copy of the present one that `change` has edited.
  template <std::invocable<T&> Change>
  bool update(Change&& change) {
    T next = value_;
    std::forward<Change>(change)(next);
    return set(std::move(next));
  }

 private:
  T value_{};
};

// A running subscription: `body` runs at once, and again in the flush of a later turn after any
// Observable that its latest run read has changed; once, however many changed. Destroying the
// Effect ends it, also in the middle of a flush and from inside its own body.
class Effect {
 public:
  Effect() = default;
  explicit Effect(std::function<void(const Wake&)> body);
  ~Effect();
  Effect(Effect&& other) noexcept = default;
  Effect& operator=(Effect&& other) noexcept;

  void stop();
  bool isRunning() const { return state_ != nullptr; }

 private:
  std::shared_ptr<EffectState> state_;
};

template <std::invocable<const Wake&> Body>
[[nodiscard]] Effect effect(Body body) {
  return Effect(std::function<void(const Wake&)>(std::move(body)));
}
template <std::invocable<> Body>
[[nodiscard]] Effect effect(Body body) {
  return Effect([body = std::move(body)](const Wake&) mutable { body(); });
}

namespace detail {
// Suspends the running effect's subscription for a scope.
class UntrackedScope {
 public:
  UntrackedScope();
  ~UntrackedScope();
  UntrackedScope(const UntrackedScope&) = delete;

 private:
  EffectState* suspended_;
};
}  // namespace detail

// Runs `body` as if no effect were running: its reads subscribe nobody, its writes are allowed.
template <std::invocable<> Body>
decltype(auto) untracked(Body&& body) {
  const detail::UntrackedScope scope;
  return std::forward<Body>(body)();
}

// Runs every woken effect, in the order of their creation, until none is left: at most 100 rounds,
// then the assertion "effects do not settle". Called by the Scheduler at the end of each turn.
void flushEffects();
bool hasWokenEffects();

// Tells whoever runs the loop that a flush is due; replaces the former listener. The Scheduler's.
void onEffectsWoken(std::function<void()> listener);

}  // namespace orvel
