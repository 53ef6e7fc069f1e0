#pragma once

#include <functional>
#include <utility>

#include "Base/Observable.h"

namespace orvel {

// An Observable that everybody reads and `Owner` alone writes.
template <class T, class Owner, class Equal = std::equal_to<T>>
class Published : private Observable<T, Equal> {
  using Base = Observable<T, Equal>;

 public:
  Published() = default;
  explicit(false) Published(T initial) : Base(std::move(initial)) {}

  using Base::get;
  using Base::peek;
  using Base::operator*;
  using Base::operator->;
  operator const T&() const { return get(); }

 private:
  friend Owner;
  // Puts a value in place for a test.
  friend struct Publish;
  using Base::set;
  using Base::update;
  using Base::operator=;
};

}  // namespace orvel
