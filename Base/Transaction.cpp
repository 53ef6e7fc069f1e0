#include "Base/Transaction.h"

#include <utility>

namespace orvel {

namespace {

thread_local const Transaction* innermost = nullptr;
thread_local uint64_t lastID = 0;

}  // namespace

void Transaction::run(const Spring& spring, const std::function<void()>& change) {
  const Transaction transaction{++lastID, spring};
  const Transaction* const outer = std::exchange(innermost, &transaction);
  change();
  innermost = outer;
}

const Transaction* Transaction::current() { return innermost; }

}  // namespace orvel
