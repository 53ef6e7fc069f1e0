#include "Views/WindowShortcuts.h"

#include "Views/BrowserView.h"

namespace orvel {

namespace {

struct Keys {
  BrowserStore& store;
  BrowserView& view;

  TabRef selected() const { return store.activeSpace()->selectedTab(); }
  template <class Action>
  void withTab(Action action) const {
    if (const auto tab = selected()) action(tab);
  }
};

struct Shortcut {
  const char* trigger;
  void (*perform)(const Keys& keys);
};

constexpr Shortcut kShortcuts[] = {
    {"<Control>t", [](const Keys& k) { k.store.showCommandBar(CommandBarMode::NewTab); }},
    {"<Control>l|<Alt>d",
     [](const Keys& k) {
       k.store.showCommandBar(k.selected() ? CommandBarMode::CurrentTab : CommandBarMode::NewTab);
     }},
    {"<Control><Shift>n", [](const Keys& k) { k.store.beginNewSpace(); }},
    {"<Control>comma", [](const Keys& k) { k.view.activate_action("win.settings"); }},
    {"<Control>s", [](const Keys& k) { k.store.toggleSidebar(); }},
    {"<Control>d",
     [](const Keys& k) { k.withTab([&](const TabRef& tab) { k.store.togglePin(tab); }); }},
    {"<Control>w", [](const Keys& k) { k.store.closeSelectedTab(); }},
    {"<Control><Shift>t", [](const Keys& k) { k.store.reopenClosedTab(); }},
    {"<Control><Shift>c", [](const Keys& k) { k.store.copyLink(); }},
    {"<Control><Alt><Shift>c",
     [](const Keys& k) { k.store.copyLink(nullptr, BrowserStore::LinkForm::Markdown); }},
    {"<Control>r|F5", [](const Keys& k) { k.withTab([](const TabRef& tab) { tab->reload(); }); }},
    {"<Control><Shift>r|<Control>F5",
     [](const Keys& k) {
       k.withTab([](const TabRef& tab) { tab->reload(ReloadSource::Origin); });
     }},
    {"<Alt>Left|<Control>bracketleft",
     [](const Keys& k) { k.withTab([](const TabRef& tab) { tab->goBack(); }); }},
    {"<Alt>Right|<Control>bracketright",
     [](const Keys& k) { k.withTab([](const TabRef& tab) { tab->goForward(); }); }},
    {"<Control>Page_Down", [](const Keys& k) { k.store.selectAdjacentTab(1); }},
    {"<Control>Page_Up", [](const Keys& k) { k.store.selectAdjacentTab(-1); }},
    {"F11",
     [](const Keys& k) {
       auto* window = GTK_WINDOW(gtk_widget_get_root(k.view.gobj()));
       if (gtk_window_is_fullscreen(window))
         gtk_window_unfullscreen(window);
       else
         gtk_window_fullscreen(window);
     }},
    {"F6", [](const Keys& k) { k.view.switchRegion(); }},
    {"F10", [](const Keys& k) { k.view.sidebar().tools().showMainMenu(); }},
};
constexpr int kDigits = 9;

// Answers whether the keys were taken: a sheet keeps them for itself.
bool performOutsideSheets(BrowserStore& store, const std::function<void()>& perform) {
  if (store.spaceDraft.peek()) return false;
  perform();
  return true;
}

void add(GtkShortcutController* controller, BrowserStore& store, const char* trigger,
         std::function<void()> perform) {
  auto* action = new std::function<bool()>(
      [&store, perform = std::move(perform)] { return performOutsideSheets(store, perform); });
  gtk_shortcut_controller_add_shortcut(
      controller,
      gtk_shortcut_new(
          gtk_shortcut_trigger_parse_string(trigger),
          gtk_callback_action_new(
              [](GtkWidget*, GVariant*, gpointer data) -> gboolean {
                return (*static_cast<std::function<bool()>*>(data))();
              },
              action, [](gpointer data) { delete static_cast<std::function<bool()>*>(data); })));
}

void goToSpace(BrowserStore& store, int number) {
  const auto spaces = store.spaces.peek();
  if (number <= static_cast<int>(spaces.size()))
    store.switchTo(spaces[static_cast<size_t>(number - 1)]);
}

}  // namespace

void installWindowShortcuts(GtkWidget* window, BrowserStore& store, BrowserView& view) {
  auto* controller = GTK_SHORTCUT_CONTROLLER(gtk_shortcut_controller_new());
  gtk_shortcut_controller_set_scope(controller, GTK_SHORTCUT_SCOPE_GLOBAL);
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(controller), GTK_PHASE_CAPTURE);
  const Keys keys = {store, view};
  for (const auto& shortcut : kShortcuts)
    add(controller, store, shortcut.trigger, [keys, perform = shortcut.perform] { perform(keys); });
  for (int digit = 1; digit <= kDigits; ++digit) {
    add(controller, store, ("<Control>" + std::to_string(digit)).c_str(),
        [&store, digit] { store.selectTabNumber(digit); });
    add(controller, store, ("<Alt>" + std::to_string(digit)).c_str(),
        [&store, digit] { goToSpace(store, digit); });
  }
  gtk_widget_add_controller(window, GTK_EVENT_CONTROLLER(controller));
}

}  // namespace orvel
