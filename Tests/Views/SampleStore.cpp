#include "Tests/Views/SampleStore.h"

#include "Base/GRef.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Windows/Toasts.h"
#include "Tests/Kit/Publish.h"

namespace orvel::test {

namespace {

// A page of a believable site, drawn by the toolkit.
GtkWidget* makePage(const std::string& title) {
  const GText markup(g_markup_printf_escaped(
      "<b>Tidewater Almanac</b>\n\n\n<span size='26pt' weight='bold'>%s</span>\n\n"
      "Every tide leaves a signature. Long before a harbour posts its table, the water itself has "
      "told you which way it means to go: a seam of foam off the breakwater, eelgrass combed flat, "
      "gulls working one edge of a channel and ignoring the other.\n\nStart with the slack. Twice "
      "each cycle the stream hesitates, and for some minutes the surface goes oddly smooth.",
      title.c_str()));
  auto* label = gtk_label_new(nullptr);
  gtk_widget_add_css_class(label, "sample-page");
  gtk_label_set_markup(GTK_LABEL(label), markup.get());
  gtk_label_set_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  gtk_label_set_yalign(GTK_LABEL(label), 0);
  return GTK_WIDGET(g_object_ref_sink(label));
}

}  // namespace

SampleStore::SampleStore() {
  world.launch();
  auto& model = store();
  const auto open = [&](const char* host, const char* title, uint32_t color) {
    const std::string url = std::string("https://") + host + "/";
    world.engine.pages[url] = {.title = title};
    const auto tab = world.open(url, false);
    tab->title = std::string(title);
    const auto channel = [color](int shift) { return static_cast<uint8_t>(color >> shift); };
    tab->setFavicon(Image::make(1, 1, {channel(16), channel(8), channel(0), 255}));
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
  } favorites[] = {{"mail.example", "Mail", 0xD5533B},   {"calendar.example", "Calendar", 0x2C6B5E},
                   {"chat.example", "Chat", 0x7A5AE0},   {"notes.example", "Notes", 0x8A3F6B},
                   {"forge.example", "Forge", 0x22262B}, {"way.example", "Waymark", 0xF1B63B},
                   {"sky.example", "Skies", 0x5AA6DE},   {"lantern.example", "Lantern", 0x6B48C8}};
  for (const auto& favorite : favorites)
    model.move(open(favorite.host, favorite.title, favorite.color), FavoritesDestination{}, space);

  model.folders.newFolder(open("slowtable.example", "Starters", 0xC9772C));
  const auto recipes = foldersOf(space->pinned).front();
  model.folders.rename(recipes, "Recipes");
  model.folders.toggle(recipes);
  model.folders.newFolder(
      open("norrland-line.example", "Sailings and fares, Norrland Line", 0x0F4C81));
  const auto crossing = foldersOf(space->pinned).front();
  model.folders.rename(crossing, "Crossing in June");
  model.move(open("way.example", "Skerry Point to Old Quay", 0xF1B63B),
             PinnedDestination{crossing, std::nullopt}, space);
  model.folders.endRenaming();
  model.move(open("harbour-post.example", "The Harbour Post", 0x23324D), PinnedDestination{},
             space);
  model.move(open("encyclia.example", "Encyclia: Celestial navigation", 0x6E675B),
             PinnedDestination{}, space);

  open("slowtable.example", "Slow Table: rye loaf with caraway", 0xC9772C);
  open("forge.example", "compass-rose: pull request 214", 0x22262B);
  open("kelp.example", "Kelp & Co. Seaweed broth", 0x2E5B45);
  radio = open("strand-radio.example", "Strand Radio: Night Signals", 0x2B6A52);
  radio->isPlayingMedia = true;
  reading = open("tidewater-almanac.example", "Reading the water: a field guide to tidal currents",
                 0x1E6F86);
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
