#include <adwaita.h>
#include <gtest/gtest.h>

#include "DesignSystem/StyleSheet.h"

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  adw_init();
  orvel::StyleSheet::load(std::filesystem::path(ORVEL_BUILD_DIR) / "share/orvel");
  return RUN_ALL_TESTS();
}
