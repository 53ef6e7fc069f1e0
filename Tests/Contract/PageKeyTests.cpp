#include <gdk/x11/gdkx.h>

#include "Desktop/Gtk/GtkDesktopWindow.h"
#include "Desktop/Gtk/GtkEventSource.h"
#include "Tests/Engine/EngineTest.h"

namespace orvel::test {
namespace {

using PageKeyTest = EngineTest;

// The engine puts such a key into the queue once more, for the window to use.
TEST_F(PageKeyTest, AKeyThatThePageLeavesIsOfferedOnce) {
  server.serve("http://page.test/",
               "<title>x</title><script>window.downs = 0; addEventListener('keydown', event => "
               "{ ++downs; if (event.key === 'b') event.preventDefault(); })</script>");
  const auto view = makeView();
  show(*view);
  load(*view, "http://page.test/");
  GtkDesktopWindow window(GTK_WINDOW(gtk_widget_get_root(view->widget())));
  EventMonitors monitors;
  const GtkEventSource source(window, monitors);
  int offered = 0;
  const auto monitor = monitors.install([&](DesktopWindow&, const InputEvent& event) {
    offered += std::holds_alternative<KeyDown>(event);
    return EventUse::PassedOn;
  });
  view->focus();
  const auto id = gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(window.native())));
  for (const char* key : {"a", "b"}) {
    const std::string before = evaluate(*view, "downs");
    const std::string command = fmt::format("xdotool windowfocus --sync {} key {}", id, key);
    offered = 0;
    ASSERT_TRUE(g_spawn_command_line_async(command.c_str(), nullptr));
    EXPECT_TRUE(eventually([&] { return evaluate(*view, "downs") != before; })) << key;
    turnFor(300ms);
    EXPECT_EQ(offered, 1) << key;
  }
}

}  // namespace
}  // namespace orvel::test
