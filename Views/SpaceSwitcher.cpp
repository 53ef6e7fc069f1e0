#include "Views/SpaceSwitcher.h"

#include <glib/gi18n.h>
#include <gtkmm/adjustment.h>

#include "DesignSystem/ShownText.h"
#include "DesignSystem/StyleSheet.h"
#include "Views/MainMenuView.h"
#include "Views/SidebarMenus.h"

namespace orvel {

namespace {

constexpr int kActiveIcon = 15;
constexpr int kIcon = 16;

}  // namespace

SpaceSwitcher::SpaceSwitcher(BrowserStore& store)
    : store_(store), newSpace_("plus", _("New Space (Ctrl+Shift+N)")) {
  add_css_class("spaces");
  row_.add_css_class("seals");
  row_.set_valign(Gtk::Align::CENTER);
  scroller_.set_focusable(false);
  scroller_.set_policy(Gtk::PolicyType::EXTERNAL, Gtk::PolicyType::NEVER);
  scroller_.set_hexpand(true);
  scroller_.set_child(row_);
  append(scroller_);
  append(towel_);
  towel_.signal_clicked().connect(
      [this] { store_.showToast(_("Happy Towel Day. You know where your towel is.")); });
  newSpace_.signal_clicked().connect([this] { store_.beginNewSpace(); });
  append(newSpace_);
  spaces_ = effect([this] { makeSeals(); });
  auto& scheduler = store_.services().scheduler;
  towel_.set_visible(TowelDay::isToday(scheduler.now()));
  date_ = scheduler.start(followDate(scheduler, *this));
}

// The switcher cancels it when it goes: only a task that was not may look at the switcher.
Task<> SpaceSwitcher::followDate(Scheduler& scheduler, SpaceSwitcher& switcher) {
  for (;;) {
    const auto untilTomorrow = TowelDay::untilTomorrow(scheduler.now());
    const auto result = co_await sleep(untilTomorrow, SleepClock::Boot);
    if (result == SleepResult::Cancelled) co_return;
    const bool wasCancelled = co_await isCancelled();
    if (wasCancelled) co_return;
    switcher.towel_.set_visible(TowelDay::isToday(scheduler.now()));
  }
}

void SpaceSwitcher::makeSeals() {
  for (auto& seal : seals_) row_.remove(seal->button);
  seals_.clear();
  const auto spaces = store_.spaces.get();
  untracked([&] {
    for (const auto& space : spaces) addSeal(space);
  });
}

void SpaceSwitcher::addSeal(const std::shared_ptr<Space>& space) {
  auto& seal = *seals_.emplace_back(std::make_unique<Seal>());
  auto* icon = makeIcon("person.fill", kIcon);
  seal.button.set_child(*icon);
  seal.button.add_css_class("seal");
  seal.button.signal_clicked().connect([this, space] { store_.switchTo(space); });
  installContextMenu(seal.button, [this, space] { return spaceMenu(store_, space); });
  row_.append(seal.button);
  seal.look = effect([this, space, icon, button = &seal.button] {
    const bool isActive = store_.activeSpace() == space;
    setIcon(*icon, space->symbol.get());
    icon->set_pixel_size(isActive ? kActiveIcon : kIcon);
    const auto name = shownText(space->name.get());
    button->set_tooltip_text(name);
    setAccessibleLabel(*button, name);
    setClass(button->Gtk::Widget::gobj(), "active", isActive);
    if (isActive) bringIntoView(*button);
  });
}

void SpaceSwitcher::bringIntoView(Gtk::Widget& seal) {
  double x = 0;
  double y = 0;
  if (!seal.get_width() || !seal.translate_coordinates(row_, 0, 0, x, y)) return;
  scroller_.get_hadjustment()->clamp_page(x, x + seal.get_width());
}

ToolsRow::ToolsRow(BrowserStore& store) : store_(store), menu_("menu", _("Main Menu (F10)")) {
  add_css_class("tools");
  auto* space = Gtk::make_managed<Gtk::Box>();
  space->set_hexpand(true);
  append(*space);
  append(menu_);
  menu_.signal_clicked().connect([this] { toggleMainMenu(); });
}

void ToolsRow::toggleMainMenu() {
  if (!dismissMenu(menu_)) presentMenuAbove(menu_, mainMenuEntries(store_));
}

}  // namespace orvel
