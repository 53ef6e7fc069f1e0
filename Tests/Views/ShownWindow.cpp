#include "Tests/Views/ShownWindow.h"

#include "Models/Store/BrowserStore.h"

namespace orvel::test {

Space& ShownWindow::space() { return *store().activeSpace(); }

void ShownWindow::openPages(int count, const std::shared_ptr<Space>& in) {
  for (int i = 0; i < count; ++i)
    store().openTab(address("https://page" + std::to_string(i) + ".example/"),
                    {.in = in, .select = false});
  settle();
}

}  // namespace orvel::test
