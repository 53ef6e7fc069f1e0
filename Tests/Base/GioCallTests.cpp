#include "Base/GioCall.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "Tests/Kit/Eventually.h"

namespace orvel {
namespace {

// What was handed over, how often, and who still holds on to it.
struct Reply {
  std::shared_ptr<int> calls = std::make_shared<int>(0);
  std::optional<goffset> size;
  bool hasFailed = false;

  auto noting() {
    return [this, held = calls](GFileInfo* found, const GErrorRef& error) {
      const auto info = GRef<GFileInfo>::adopt(found);
      ++*held;
      if (info) size = g_file_info_get_size(info.get());
      hasFailed = error != nullptr;
    };
  }
  bool isGone() const { return calls.use_count() == 1; }
};

TEST(GioCall, AnswersOnceWithTheValueOrTheErrorAndIsGoneThen) {
  for (const char* path : {"/proc/self/exe", "/proc/self/missing"}) {
    const auto file = GRef<GFile>::adopt(g_file_new_for_path(path));
    Reply reply;
    gioCall(g_file_query_info_async, file.get(), G_FILE_ATTRIBUTE_STANDARD_SIZE,
            G_FILE_QUERY_INFO_NONE, G_PRIORITY_DEFAULT, nullptr)
        .then(g_file_query_info_finish, reply.noting());
    EXPECT_EQ(*reply.calls, 0) << "later";
    EXPECT_TRUE(test::eventually([&] { return reply.isGone(); })) << path;
    EXPECT_EQ(*reply.calls, 1);
    EXPECT_NE(reply.size.has_value(), reply.hasFailed);
    EXPECT_EQ(reply.hasFailed, std::string(path).ends_with("missing"));
  }
}

TEST(GioCall, IsGoneAfterItWasCancelledToo) {
  const auto file = GRef<GFile>::adopt(g_file_new_for_path("/proc/self/exe"));
  const auto cancelled = GRef<GCancellable>::adopt(g_cancellable_new());
  Reply reply;
  gioCall(g_file_query_info_async, file.get(), G_FILE_ATTRIBUTE_STANDARD_SIZE,
          G_FILE_QUERY_INFO_NONE, G_PRIORITY_DEFAULT, cancelled.get())
      .then(g_file_query_info_finish, reply.noting());
  g_cancellable_cancel(cancelled.get());
  EXPECT_TRUE(test::eventually([&] { return reply.isGone(); }));
  EXPECT_EQ(*reply.calls, 1);
  EXPECT_TRUE(reply.hasFailed);
}

}  // namespace
}  // namespace orvel
