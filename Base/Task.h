#pragma once

#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

// Coroutines of the main thread.
//
// A coroutine is a function that returns `Task<T>`, never a capturing lambda: its arguments are
// taken by value, weak references are locked again after each await, and awaits stand in simple
// statements
// (`const auto v = co_await x;`). Awaiting a `Task` runs it at once and resumes with its result.
// `Scheduler::start` runs one from the next turn on.
namespace orvel {

class Scheduler;

namespace detail {

// The running coroutine's place in the scheduler: one per `start`, shared by the tasks it awaits.
struct TaskContext {
  Scheduler* scheduler = nullptr;
  std::coroutine_handle<> root;
  bool isCancelled = false;
  // Ends the present sleep early; empty when the task is not asleep.
  void* sleeper = nullptr;
  uint64_t id = 0;
};

struct TaskPromiseBase {
  std::shared_ptr<TaskContext> context;
  std::coroutine_handle<> continuation;

  std::suspend_always initial_suspend() noexcept { return {}; }

  struct FinalAwaiter {
    bool await_ready() noexcept { return false; }
    template <class Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> finished) noexcept {
      const auto next = finished.promise().continuation;
      return next ? next : std::noop_coroutine();
    }
    void await_resume() noexcept {}
  };
  FinalAwaiter final_suspend() noexcept { return {}; }

  // Expected failures are values; anything thrown out of a task is a fault of the program.
  [[noreturn]] void unhandled_exception() { std::terminate(); }
};

}  // namespace detail

template <class T = void>
class [[nodiscard]] Task {
 public:
  struct promise_type : detail::TaskPromiseBase {
    std::optional<T> result;
    Task get_return_object() { return Task(Handle::from_promise(*this)); }
    template <class Value>
    void return_value(Value&& value) {
      result.emplace(std::forward<Value>(value));
    }
    T take() { return std::move(*result); }
  };
  using Handle = std::coroutine_handle<promise_type>;

  Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, {})) {}
  Task& operator=(Task&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Task() {
    if (handle_) handle_.destroy();
  }

  struct Awaiter {
    Handle callee;
    bool await_ready() const { return false; }
    template <class Promise>
    Handle await_suspend(std::coroutine_handle<Promise> caller) {
      callee.promise().context = caller.promise().context;
      callee.promise().continuation = caller;
      return callee;
    }
    T await_resume() { return callee.promise().take(); }
  };
  Awaiter operator co_await() && { return {handle_}; }

  // Gives the frame away: the caller destroys it.
  Handle release() { return std::exchange(handle_, {}); }

 private:
  explicit Task(Handle handle) : handle_(handle) {}
  Handle handle_;
};

template <>
struct Task<void>::promise_type : detail::TaskPromiseBase {
  Task get_return_object();
  void return_void() {}
  void take() {}
};

inline Task<void> Task<void>::promise_type::get_return_object() {
  return Task(Handle::from_promise(*this));
}

// The right to cancel a started task. Destroying or replacing a handle cancels its task, also from
// inside the task itself; `detach` gives the right up and lets the task run out.
class TaskHandle {
 public:
  TaskHandle() = default;
  explicit TaskHandle(std::weak_ptr<detail::TaskContext> context) : context_(std::move(context)) {}
  TaskHandle(TaskHandle&& other) noexcept : context_(std::exchange(other.context_, {})) {}
  TaskHandle& operator=(TaskHandle&& other) noexcept;
  ~TaskHandle() { cancel(); }

  // Marks the task cancelled and answers its sleep, if it is in one, with `Cancelled` on the next
  // turn. Cancelling is cooperative: the task goes on with what it does after that.
  void cancel();
  void detach() { context_.reset(); }

  // The task has been started, has not ended and is still this handle's.
  explicit operator bool() const { return !context_.expired(); }

 private:
  std::weak_ptr<detail::TaskContext> context_;
};

}  // namespace orvel
