#pragma once

#include <cstdint>
#include <functional>

#include "Base/Spring.h"

namespace orvel {

// An animated change of the model. Every write that happens inside it is stamped with it, and the
// effects which that write wakes learn the spring to move by.
struct Transaction {
  // Later transactions have higher numbers.
  uint64_t id = 0;
  Spring spring;

  // Runs `change` inside a new transaction. Nested calls stamp with the innermost one.
  static void run(const Spring& spring, const std::function<void()>& change);

  // The transaction around the present call; null outside of any.
  static const Transaction* current();
};

}  // namespace orvel
