#pragma once

#include <type_traits>
#include <utility>

#include "Base/Published.h"

namespace orvel {

struct Publish {
  template <class T, class Owner, class Equal>
  static void set(Published<T, Owner, Equal>& field, T value) {
    field.set(std::move(value));
  }
};

namespace test {

// Puts the value in place of what the field's owner alone sets.
template <class T, class Owner, class Equal>
void publish(Published<T, Owner, Equal>& field, std::type_identity_t<T> value) {
  Publish::set(field, std::move(value));
}

}  // namespace test
}  // namespace orvel
