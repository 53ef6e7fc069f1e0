#include "Tests/Views/SampleStore.h"

#include <pango/pangocairo.h>

#include <numbers>

#include "Base/GRef.h"
#include "DesignSystem/Paint.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Store/Archive.h"
#include "Models/Windows/Toasts.h"
#include "Tests/Kit/Publish.h"

namespace orvel::test {

namespace {

constexpr int kIconSize = 64;

// A site's icon: a letter on a rounded square.
ImageRef letterIcon(Color color, const char* letter) {
  auto* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kIconSize, kIconSize);
  auto* cairo = cairo_create(surface);
  constexpr double kRadius = 14;
  const double far = kIconSize - kRadius;
  for (int corner = 0; corner < 4; ++corner) {
    const double angle = (corner - 2) * std::numbers::pi / 2;
    cairo_arc(cairo, corner == 1 || corner == 2 ? far : kRadius,
              corner == 2 || corner == 3 ? far : kRadius, kRadius, angle,
              angle + std::numbers::pi / 2);
  }
  setSource(cairo, color, 1);
  cairo_fill(cairo);
  auto* layout = pango_cairo_create_layout(cairo);
  auto* font = pango_font_description_from_string("EB Garamond Bold");
  pango_font_description_set_absolute_size(font, 46 * PANGO_SCALE);
  pango_layout_set_font_description(layout, font);
  pango_layout_set_text(layout, letter, -1);
  int width = 0;
  int height = 0;
  pango_layout_get_pixel_size(layout, &width, &height);
  cairo_set_source_rgb(cairo, 1, 1, 1);
  cairo_move_to(cairo, (kIconSize - width) / 2.0, (kIconSize - height) / 2.0);
  pango_cairo_show_layout(cairo, layout);
  pango_font_description_free(font);
  g_object_unref(layout);
  cairo_destroy(cairo);
  cairo_surface_flush(surface);

  std::vector<uint8_t> pixels;
  const auto* data = cairo_image_surface_get_data(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  for (int y = 0; y < kIconSize; ++y)
    for (int x = 0; x < kIconSize; ++x) {
      const uint8_t* pixel = data + y * stride + x * 4;
      const int alpha = pixel[3];
      for (const int channel : {2, 1, 0})
        pixels.push_back(static_cast<uint8_t>(alpha ? pixel[channel] * 255 / alpha : 0));
      pixels.push_back(static_cast<uint8_t>(alpha));
    }
  cairo_surface_destroy(surface);
  return Image::make(kIconSize, kIconSize, std::move(pixels));
}

// A page of a believable site, drawn by the toolkit.
GtkWidget* makePage(const std::string& title) {
  auto* page = gtk_box_new(GTK_ORIENTATION_VERTICAL, 18);
  gtk_widget_add_css_class(page, "sample-page");
  const auto add = [page](const std::string& markup, int top) {
    auto* label = gtk_label_new(nullptr);
    gtk_label_set_markup(GTK_LABEL(label), markup.c_str());
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_max_width_chars(GTK_LABEL(label), 60);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_widget_set_margin_start(label, 48);
    gtk_widget_set_margin_end(label, 48);
    gtk_widget_set_margin_top(label, top);
    gtk_widget_set_halign(label, GTK_ALIGN_START);
    gtk_box_append(GTK_BOX(page), label);
  };
  const GText escaped(g_markup_escape_text(title.c_str(), -1));
  add("<span size='11pt' weight='bold'>Tidewater Almanac</span>", 24);
  add("<span size='26pt' weight='bold'>" + std::string(escaped.get()) + "</span>", 60);
  add("<span size='12pt'>Every tide leaves a signature. Long before a harbour posts its table, the "
      "water itself has told you which way it means to go: a seam of foam off the breakwater, "
      "eelgrass combed flat, gulls working one edge of a channel and ignoring the other.</span>",
      0);
  add("<span size='12pt'>Start with the slack. Twice each cycle the stream hesitates, and for some "
      "minutes the surface goes oddly smooth.</span>",
      0);
  g_object_ref_sink(page);
  return page;
}

}  // namespace

SampleStore::SampleStore() {
  world.launch();
  auto& model = store();
  const auto open = [&](const char* host, const char* title, Color color, const char* letter) {
    const std::string url = std::string("https://") + host + "/";
    world.engine.pages[url] = {.title = title};
    const auto tab = world.open(url, false);
    tab->title = std::string(title);
    tab->setFavicon(letterIcon(color, letter));
    return tab;
  };
  const auto space = model.activeSpace();
  space->name = std::string("Personal");
  space->symbol = std::string("person.fill");
  space->hue = 0.94;
  const struct {
    const char* name;
    const char* symbol;
    double hue;
  } others[] = {{"Studio", "briefcase.fill", 0.05},
                {"Thesis", "graduationcap.fill", 0.61},
                {"Garden", "leaf.fill", 0.30}};
  auto spaces = model.spaces.peek();
  for (const auto& other : others)
    spaces.push_back(std::make_shared<Space>(UUID::random(), space->profile, other.name,
                                             other.symbol, other.hue));
  model.setSpaces(std::move(spaces));

  const struct {
    const char* host;
    const char* title;
    uint32_t color;
    const char* letter;
  } favorites[] = {
      {"mail.example", "Mail", 0xD5533B, "M"},   {"calendar.example", "Calendar", 0x2C6B5E, "C"},
      {"chat.example", "Chat", 0x7A5AE0, "Q"},   {"notes.example", "Notes", 0x8A3F6B, "N"},
      {"forge.example", "Forge", 0x22262B, "F"}, {"way.example", "Waymark", 0xF1B63B, "W"},
      {"sky.example", "Skies", 0x5AA6DE, "S"},   {"lantern.example", "Lantern", 0x6B48C8, "L"}};
  for (const auto& favorite : favorites)
    model.move(open(favorite.host, favorite.title, Color::hex(favorite.color), favorite.letter),
               FavoritesDestination{}, space);

  model.folders.newFolder(open("slowtable.example", "Starters", Color::hex(0xC9772C), "S"));
  const auto recipes = foldersOf(space->pinned).front();
  model.folders.rename(recipes, "Recipes");
  model.folders.toggle(recipes);
  model.folders.newFolder(open("norrland-line.example", "Sailings and fares, Norrland Line",
                               Color::hex(0x0F4C81), "N"));
  const auto crossing = foldersOf(space->pinned).front();
  model.folders.rename(crossing, "Crossing in June");
  model.move(open("way.example", "Skerry Point to Old Quay", Color::hex(0xF1B63B), "W"),
             PinnedDestination{crossing, std::nullopt}, space);
  model.folders.endRenaming();
  model.move(open("harbour-post.example", "The Harbour Post", Color::hex(0x23324D), "H"),
             PinnedDestination{}, space);
  model.move(open("encyclia.example", "Encyclia: Celestial navigation", Color::hex(0x6E675B), "E"),
             PinnedDestination{}, space);

  open("slowtable.example", "Slow Table: rye loaf with caraway", Color::hex(0xC9772C), "S");
  open("forge.example", "compass-rose: pull request 214", Color::hex(0x22262B), "F");
  open("kelp.example", "Kelp & Co. Seaweed broth", Color::hex(0x2E5B45), "K");
  radio = open("strand-radio.example", "Strand Radio: Night Signals", Color::hex(0x2B6A52), "R");
  radio->isPlayingMedia = true;
  reading = open("tidewater-almanac.example", "Reading the water: a field guide to tidal currents",
                 Color::hex(0x1E6F86), "T");
  const struct {
    const char* url;
    const char* title;
  } former[] = {
      {"https://shoreline.example/pools", "Tide pools after dark"},
      {"https://tidewater-almanac.example/streams", "Current and reversing streams, explained"},
      {"https://norrland-line.example/cabins", "Cabins and bicycles on board"}};
  for (const auto& page : former)
    model.history->recordVisit(space->profile->id, address(page.url), page.title,
                               world.scheduler.now());
  publish(model.archive.records,
          std::vector<ArchivedTabRecord>{
              {.tab = {.id = UUID::random(),
                       .title = "Harmonic analysis of tides: reading notes",
                       .url = address("https://fjord.example/notes")}},
              {.tab = {.id = UUID::random(),
                       .title = "Summer timetable, draft",
                       .url = address("https://norrland-line.example/draft")}}});
  for (const auto& tab : space->today.peek()) tab->lastActiveAt.reset();
  for (const auto& tab : space->allTabs()) tab->lastActiveAt.reset();
  publish(model.toasts.toast, std::nullopt);
  model.select(reading, space);
  world.scheduler.settle();
  showPages();
}

void SampleStore::showPages() {
  for (const auto& tab : store().everyTab())
    if (const auto view = world.view(tab); view && !view->pageWidget)
      view->pageWidget = makePage(tab->title.peek());
}

}  // namespace orvel::test
