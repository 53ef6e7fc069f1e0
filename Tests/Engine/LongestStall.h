#pragma once

#include <glib.h>
#include <time.h>

#include <algorithm>
#include <functional>

#include "Base/Time.h"

namespace orvel::test {

// The longest time for which the main thread computed between two turns of its loop while `body`
// ran. Processor time: what other programs take of a busy machine doesn't count.
inline Duration longestStall(const std::function<void()>& body) {
  struct Watch {
    Duration last = computed();
    Duration worst{0};
    static Duration computed() {
      timespec time{};
      clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
      return std::chrono::seconds(time.tv_sec) + Duration(time.tv_nsec / 1000);
    }
  } watch;
  const guint tick = g_timeout_add_full(
      G_PRIORITY_HIGH, 1,
      [](gpointer data) -> gboolean {
        auto& seen = *static_cast<Watch*>(data);
        const Duration now = Watch::computed();
        seen.worst = std::max(seen.worst, now - seen.last);
        seen.last = now;
        return TRUE;
      },
      &watch, nullptr);
  body();
  g_source_remove(tick);
  return watch.worst;
}

}  // namespace orvel::test
