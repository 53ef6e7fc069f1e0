#include "Views/Spaces/SpaceSwitcher.h"

#include <gdkmm/frameclock.h>
#include <gtkmm/adjustment.h>
#include <gtkmm/eventcontrollerscroll.h>

#include "Base/Texts.h"
#include "DesignSystem/ShownText.h"
#include "DesignSystem/StyleSheet.h"
#include "Models/Commands/ActionCatalog.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/BrowserStore.h"
#include "Views/Sidebar/SidebarMenus.h"
#include "Views/Window/MainMenuView.h"

namespace orvel {

namespace {

constexpr int kActiveIcon = 15;
constexpr int kIcon = 16;
constexpr double kFade = 12;       // of the seals at an end that goes on
constexpr double kSealPitch = 32;  // by which a notch of the wheel moves them

}  // namespace

SpaceSwitcher::SpaceSwitcher(BrowserStore& store, SidebarDrag& drag)
    : store_(store), drag_(drag), newSpace_("plus", withKeys(ActionID::NewSpace)) {
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
  newSpace_.signal_clicked().connect([this] { store_.spaceEditing.beginNewSpace(); });
  append(newSpace_);
  // Before they are laid out the seals have no place.
  scroller_.get_hadjustment()->signal_changed().connect([this] { bringIntoViewLater(); });
  addWheel();
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
  active_ = nullptr;
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
  seal.button.signal_clicked().connect([this, space] { store_.switching.switchTo(space); });
  installContextMenu(seal.button, [this, space] { return spaceMenu(store_, space); });
  takeDrops(seal.button, space);
  row_.append(seal.button);
  seal.look = effect([this, space, icon, button = &seal.button] {
    const bool isActive = store_.activeSpace() == space;
    setIcon(*icon, space->symbol.get());
    setIconSize(*icon, isActive ? kActiveIcon : kIcon, IconPlace::InButton);
    const auto name = shownText(space->name.get());
    button->set_tooltip_text(name);
    setAccessibleLabel(*button, name);
    setClass(button->Gtk::Widget::gobj(), "active", isActive);
    gtk_accessible_update_state(
        GTK_ACCESSIBLE(button->Gtk::Widget::gobj()), GTK_ACCESSIBLE_STATE_PRESSED,
        isActive ? GTK_ACCESSIBLE_TRISTATE_TRUE : GTK_ACCESSIBLE_TRISTATE_FALSE, -1);
    if (!isActive) return;
    active_ = button;
    bringIntoView();
  });
}

void SpaceSwitcher::bringIntoViewLater() {
  if (std::exchange(isBringing_, true)) return;
  add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>&) {
    isBringing_ = false;
    bringIntoView();
    return false;
  });
}

void SpaceSwitcher::bringIntoView() {
  double x = 0;
  double y = 0;
  if (!active_ || !active_->get_width() || !active_->translate_coordinates(row_, 0, 0, x, y))
    return;
  // Clear of the fade at either end.
  scroller_.get_hadjustment()->clamp_page(x - kFade, x + active_->get_width() + kFade);
}

// A wheel has but one direction.
void SpaceSwitcher::addWheel() {
  auto wheel = Gtk::EventControllerScroll::create();
  wheel->set_flags(Gtk::EventControllerScroll::Flags::VERTICAL);
  wheel->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  wheel->signal_scroll().connect(
      [this, controller = wheel.get()](double, double dy) {
        const auto adjustment = scroller_.get_hadjustment();
        if (adjustment->get_upper() <= adjustment->get_page_size()) return false;
        const bool isInPixels =
            gtk_event_controller_scroll_get_unit(controller->gobj()) == GDK_SCROLL_UNIT_SURFACE;
        adjustment->set_value(adjustment->get_value() + dy * (isInPixels ? 1 : kSealPitch));
        return true;
      },
      false);
  add_controller(wheel);
}

void SpaceSwitcher::takeDrops(Gtk::Widget& seal, const std::shared_ptr<Space>& space) {
  struct Target {
    BrowserStore& store;
    SidebarDrag& drag;
    std::shared_ptr<Space> space;
  };
  const char* types[] = {kTabDragType};
  auto* controller = gtk_drop_target_async_new(gdk_content_formats_new(types, 1), GDK_ACTION_MOVE);
  g_signal_connect_data(
      controller, "drop",
      G_CALLBACK(
          +[](GtkDropTargetAsync*, GdkDrop* drop, double, double, Target* target) -> gboolean {
            const auto dragged = target->drag.tab;
            // It may have closed on its way.
            const auto tab = dragged ? target->store.tab(TabDrag{dragged->id}) : nullptr;
            if (tab) {
              const auto& today = target->space->today.peek();
              const auto first = today.empty() ? std::nullopt : std::optional(today.front()->id);
              target->store.move(tab, TodayDestination{first}, target->space);
            }
            gdk_drop_finish(drop, tab ? GDK_ACTION_MOVE : static_cast<GdkDragAction>(0));
            return tab != nullptr;
          }),
      new Target{store_, drag_, space},
      [](gpointer data, GClosure*) { delete static_cast<Target*>(data); },
      static_cast<GConnectFlags>(0));
  gtk_widget_add_controller(seal.gobj(), GTK_EVENT_CONTROLLER(controller));
}

ToolsRow::ToolsRow(BrowserStore& store)
    : store_(store), downloads_(store.downloads), menu_("menu", withKeys(ActionID::MainMenu)) {
  add_css_class("tools");
  auto* space = Gtk::make_managed<Gtk::Box>();
  space->set_hexpand(true);
  append(*space);
  append(downloads_);
  append(menu_);
  menu_.signal_clicked().connect([this] { toggleMainMenu(); });
}

void ToolsRow::toggleMainMenu() {
  if (!dismissMenu(menu_)) presentMenuAbove(menu_, mainMenuEntries(store_.commands));
}

}  // namespace orvel
