#pragma once

#include <glib.h>

#include <concepts>

#include "Base/Time.h"

namespace orvel::test {

// Turns the main loop until `condition` holds or `limit` has gone; returns whether it held.
template <std::predicate<> Condition>
bool eventually(Condition condition, Duration limit = 5s) {
  const gint64 end = g_get_monotonic_time() + limit.count();
  // Wakes the loop now and then, for conditions that change elsewhere.
  const guint tick = g_timeout_add(
      10, [](gpointer) -> gboolean { return TRUE; }, nullptr);
  bool holds = condition();
  while (!holds && g_get_monotonic_time() < end) {
    g_main_context_iteration(nullptr, TRUE);
    holds = condition();
  }
  g_source_remove(tick);
  return holds;
}

// Turns the main loop for a while: only to show that something does not happen.
inline void turnFor(Duration duration) {
  eventually([] { return false; }, duration);
}

}  // namespace orvel::test
