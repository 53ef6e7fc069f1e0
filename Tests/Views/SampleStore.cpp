#include "Tests/Views/SampleStore.h"

#include <gtk/gtk.h>

#include "Base/GRef.h"
#include "Models/MainMenu.h"

namespace orvel::test {

namespace {

// A page of a believable site, drawn by the toolkit.
GtkWidget* makePage(const std::string& title) {
  auto* page = gtk_box_new(GTK_ORIENTATION_VERTICAL, 18);
  gtk_widget_add_css_class(page, "sample-page");
  const auto add = [page](const std::string& text, const char* size) {
    auto* label = gtk_label_new(nullptr);
    const GText markup(g_markup_printf_escaped("<span size='%s'>%s</span>", size, text.c_str()));
    gtk_label_set_markup(GTK_LABEL(label), markup.get());
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_max_width_chars(GTK_LABEL(label), 60);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_widget_set_margin_start(label, 48);
    gtk_widget_set_margin_top(label, 36);
    gtk_widget_set_halign(label, GTK_ALIGN_START);
    gtk_box_append(GTK_BOX(page), label);
  };
  add(title, "26pt");
  add("Every tide leaves a signature. Long before a harbour posts its table, the water itself has "
      "told you which way it means to go: a seam of foam off the breakwater, eelgrass combed flat, "
      "gulls working one edge of a channel and ignoring the other.",
      "12pt");
  g_object_ref_sink(page);
  return page;
}

}  // namespace

SampleStore::SampleStore() {
  world.launch();
  auto& model = store();
  model.mainMenu = std::make_unique<Menu>(MainMenu::make(model));
  const auto open = [&](const std::string& site, const char* title, uint32_t color) {
    const std::string url = "https://" + site + ".example/";
    world.engine.pages[url] = {.title = title};
    const auto tab = world.open(url, false);
    tab->title = std::string(title);
    const auto byte = [color](int shift) { return static_cast<uint8_t>(color >> shift); };
    tab->setFavicon(Image::make(1, 1, {byte(16), byte(8), byte(0), 255}));
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
  model.spaces = spaces;

  const struct {
    const char* site;
    const char* title;
    uint32_t color;
  } favorites[] = {{"mail", "Mail", 0xD5533B},   {"calendar", "Calendar", 0x2C6B5E},
                   {"chat", "Chat", 0x7A5AE0},   {"notes", "Notes", 0x8A3F6B},
                   {"forge", "Forge", 0x22262B}, {"way", "Waymark", 0xF1B63B},
                   {"sky", "Skies", 0x5AA6DE},   {"lantern", "Lantern", 0x6B48C8}};
  for (const auto& [site, title, color] : favorites)
    model.move(open(site, title, color), FavoritesDestination{}, space);

  model.newFolder(open("slowtable", "Starters", 0xC9772C));
  const auto recipes = foldersOf(space->pinned).front();
  model.rename(recipes, "Recipes");
  model.toggle(recipes);
  model.newFolder(open("norrland-line", "Sailings and fares, Norrland Line", 0x0F4C81));
  const auto crossing = foldersOf(space->pinned).front();
  model.rename(crossing, "Crossing in June");
  model.move(open("way", "Skerry Point to Old Quay", 0xF1B63B),
             PinnedDestination{crossing, std::nullopt}, space);
  model.renamingFolderID = std::nullopt;
  model.move(open("harbour-post", "The Harbour Post", 0x23324D), PinnedDestination{}, space);
  model.move(open("encyclia", "Encyclia: Celestial navigation", 0x6E675B), PinnedDestination{},
             space);

  open("slowtable", "Slow Table: rye loaf with caraway", 0xC9772C);
  open("forge", "compass-rose: pull request 214", 0x22262B);
  open("kelp", "Kelp & Co. Seaweed broth", 0x2E5B45);
  radio = open("strand-radio", "Strand Radio: Night Signals", 0x2B6A52);
  radio->isPlayingMedia = true;
  reading =
      open("tidewater-almanac", "Reading the water: a field guide to tidal currents", 0x1E6F86);
  const struct {
    const char* url;
    const char* title;
    Duration ago;
  } visits[] = {
      {"https://shoreline.example/pools", "Tide pools after dark", 0h},
      {"https://tidewater-almanac.example/streams", "Current and reversing streams", 21min},
      {"https://slowtable.example/rye", "", 64min},
      {"https://norrland-line.example/cabins", "Cabins and bicycles on board", 25h},
      {"https://madd.example/", "قراءة الماء: دليل ميداني لتيارات المد والجزر", 26h},
      {"https://a.very.long.name.of.a.site.that.goes.on.and.on.example/", "Sailings", 51h}};
  for (const auto& [url, title, ago] : visits)
    model.history->recordVisit(space->profile->id, address(url), title,
                               world.scheduler.now() - ago);
  model.archive = std::vector<ArchivedTabRecord>{
      {.tab = {.id = UUID::random(),
               .title = "Harmonic analysis of tides: reading notes",
               .url = address("https://fjord.example/notes")}},
      {.tab = {.id = UUID::random(),
               .title = "Summer timetable, draft",
               .url = address("https://norrland-line.example/draft")}}};
  for (const auto& tab : space->today.peek()) tab->lastActiveAt.reset();
  for (const auto& tab : space->allTabs()) tab->lastActiveAt.reset();
  model.toast = std::nullopt;
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
