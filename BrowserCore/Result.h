#pragma once

#include <string>
#include <tl/expected.hpp>

namespace orvel {

// A value, or the reason why there is none. True when there is a value: then `*result` is it,
// otherwise `result.error()` is the reason. `Result<void, E>`: it worked, or why not.
template <class T, class E>
using Result = tl::expected<T, E>;

// What a function returns that has no value: `return Failure("no such frame");`.
template <class E>
struct Failure : tl::unexpected<E> {
  using tl::unexpected<E>::unexpected;
};
template <class E>
Failure(E) -> Failure<E>;
Failure(const char*) -> Failure<std::string>;

}  // namespace orvel
