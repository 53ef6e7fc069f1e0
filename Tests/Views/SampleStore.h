#pragma once

#include "Tests/Models/World.h"

namespace orvel::test {

// A run of the program on the fakes with spaces and tabs like a person's.
struct SampleStore {
  World world;
  TabRef reading;  // the selected tab
  TabRef radio;

  SampleStore();
  BrowserStore& store() { return *world.store; }

  // Gives every live view a page to show; call it after tabs were loaded.
  void showPages();
};

}  // namespace orvel::test
