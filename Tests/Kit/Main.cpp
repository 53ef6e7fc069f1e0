// Runs engine tests: GTK needs a display, and the engine's sandbox rights that some machines
// refuse.

#include <adwaita.h>
#include <gtest/gtest.h>

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  adw_init();
  return RUN_ALL_TESTS();
}
