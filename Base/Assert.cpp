#include "Base/Assert.h"

#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

namespace orvel {

namespace {

AssertionHandler& handler() {
  static AssertionHandler current;
  return current;
}

}  // namespace

AssertionHandler setAssertionHandler(AssertionHandler next) {
  return std::exchange(handler(), std::move(next));
}

void detail::assertionFailed(std::string_view message) {
  if (handler()) return handler()(message);
  std::fprintf(stderr, "orvel: assertion failed: %.*s\n", static_cast<int>(message.size()),
               message.data());
  std::abort();
}

void requireMainThread() {
  if constexpr (kAssertionsEnabled) {
    static const std::thread::id main = std::this_thread::get_id();
    require(std::this_thread::get_id() == main, "used off the main thread");
  }
}

}  // namespace orvel
