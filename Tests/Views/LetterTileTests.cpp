#include <cmath>

#include "Base/GRef.h"
#include "Tests/Views/ShownWindow.h"

namespace orvel::test {
namespace {

struct LetterTileTest : ShownWindow {
  // What the pixels of a widget show.
  struct Glyph {
    double contrast = 1;
    double middle = 0;  // of its height, from the widget's top
    double height = 0;
    int size = 0;
  };

  static double luminance(const guchar* pixel) {
    const auto linear = [](guchar channel) {
      const double value = channel / 255.0;
      return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.0722 * linear(pixel[0]) + 0.7152 * linear(pixel[1]) + 0.2126 * linear(pixel[2]);
  }

  static Glyph read(GtkWidget* root, GtkWidget* tile) {
    const auto paintable = GRef<GdkPaintable>::adopt(gtk_widget_paintable_new(root));
    const int width = gdk_paintable_get_intrinsic_width(paintable.get());
    const int height = gdk_paintable_get_intrinsic_height(paintable.get());
    auto* snapshot = gtk_snapshot_new();
    gdk_paintable_snapshot(paintable.get(), snapshot, width, height);
    auto* node = gtk_snapshot_free_to_node(snapshot);
    Glyph glyph{.size = gtk_widget_get_height(tile)};
    auto* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, glyph.size, glyph.size);
    auto* cairo = cairo_create(surface);
    const auto [left, top] = placeIn(root, tile);
    cairo_translate(cairo, -std::round(left), -std::round(top));
    gsk_render_node_draw(node, cairo);
    cairo_destroy(cairo);
    gsk_render_node_unref(node);
    const auto at = [surface, pixels = cairo_image_surface_get_data(surface)](int x, int y) {
      return luminance(pixels + y * cairo_image_surface_get_stride(surface) + x * 4);
    };
    const double ground = at(glyph.size / 2, 1);
    int first = glyph.size;
    int last = 0;
    for (int y = 2; y < glyph.size - 2; ++y)
      for (int x = 2; x < glyph.size - 2; ++x) {
        const double contrast = (ground + 0.05) / (at(x, y) + 0.05);
        glyph.contrast = std::max(glyph.contrast, contrast);
        if (contrast < 1.5) continue;
        first = std::min(first, y);
        last = std::max(last, y);
      }
    cairo_surface_destroy(surface);
    glyph.middle = (first + last + 1) / 2.0;
    glyph.height = last + 1 - first;
    return glyph;
  }
};

TEST_F(LetterTileTest, IsReadWhileATabSleepsAndForADigit) {
  auto& list = window->view().sidebar().section().list();
  for (const char* url : {"http://127.0.0.1/", "https://kelp.test/"}) {
    const auto tab = sample.world.open(url, false);
    settle();
    SidebarRow::Key key;
    for (const auto& row : list.rows())
      if (row.key.kind == SidebarRow::Kind::Tab && row.tabs.front() == tab) key = row.key;
    list.scrollTo(key);
    runFrames(20);
    auto* row = list.widgetFor(key)->Gtk::Widget::gobj();
    gtk_widget_add_css_class(row, "asleep");
    runFrames(4);
    auto* tile = withClass(row, "letter-tile");
    const auto glyph = read(window->view().gobj(), gtk_widget_get_parent(tile));
    EXPECT_GE(glyph.contrast, 3) << url;
    EXPECT_GE(glyph.height, 6) << url;
    EXPECT_NEAR(glyph.middle, glyph.size / 2.0, 1) << url;
  }
}

TEST_F(LetterTileTest, IconsGrowWithTheText) {
  auto* settings = gtk_settings_get_default();
  int ordinary = 0;
  g_object_get(settings, "gtk-xft-dpi", &ordinary, nullptr);
  const auto sizes = [this] {
    auto* button = withTooltip(root(), "Main Menu (F10)");
    auto* tile = findWidget(root(), [](GtkWidget* one) {
      return gtk_widget_has_css_class(one, "site") && gtk_widget_get_mapped(one);
    });
    return std::pair(gtk_widget_get_width(gtk_button_get_child(GTK_BUTTON(button))),
                     gtk_widget_get_height(tile));
  };
  EXPECT_EQ(sizes(), std::pair(16, 16));
  g_object_set(settings, "gtk-xft-dpi", 192 * 1024, nullptr);
  EXPECT_TRUE(runUntil([&] { return sizes() == std::pair(24, 32); }))
      << "in its button, and in a row";
  g_object_set(settings, "gtk-xft-dpi", ordinary, nullptr);
}

}  // namespace
}  // namespace orvel::test
