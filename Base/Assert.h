#pragma once

#include <functional>
#include <string_view>

namespace orvel {

// Takes the place of ending the program when an assertion fails; returns the handler that was
// there. An empty handler restores the default. Tests use it to see that a misuse is caught.
using AssertionHandler = std::function<void(std::string_view message)>;
AssertionHandler setAssertionHandler(AssertionHandler handler);

namespace detail {
void assertionFailed(std::string_view message);
}

#ifdef NDEBUG
inline constexpr bool kAssertionsEnabled = false;
#else
inline constexpr bool kAssertionsEnabled = true;
#endif

// A rule of the program that a caller broke: ends a debug build, costs nothing in a release build.
inline void require(bool condition, std::string_view message) {
  if constexpr (kAssertionsEnabled)
    if (!condition) detail::assertionFailed(message);
}

// The calling thread owns model, engine and interface. The first call decides which thread that is.
void requireMainThread();

}  // namespace orvel
