#include "Views/Page/FindBar.h"

#include "Base/Texts.h"
#include "Models/Commands/ActionCatalog.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageSearch.h"
#include "Views/Window/Keyboard.h"

namespace orvel {

namespace {

constexpr int kChevronSize = 12;
constexpr auto kForwards = BrowserTab::FindDirection::Forwards;
constexpr auto kBackwards = BrowserTab::FindDirection::Backwards;

}  // namespace

FindBar::FindBar(BrowserStore& store)
    : store_(store),
      theme_(Gtk::Widget::gobj()),
      field_(fieldActions()),
      notFound_(_("Not found")),
      previous_("chevron.up", withKeys(_("Previous"), ActionID::FindPrevious), kChevronSize),
      next_("chevron.down", withKeys(_("Next"), ActionID::FindNext), kChevronSize),
      close_("xmark", _("Close (Esc)")),
      presence_(Gtk::Widget::gobj(), 0, [this](double presence) {
        set_opacity(std::clamp(presence, 0.0, 1.0));
        set_child_visible(isShown_ || presence > 0.001);
        if (auto* parent = get_parent()) parent->queue_allocate();
      }) {
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_SEARCH);
  setAccessibleLabel(*this, _("Find on page"));
  add_css_class("find-bar");
  set_opacity(0);
  set_can_target(false);
  set_can_focus(false);
  setAccessibleHidden(*this, true);
  auto* symbol = makeIcon("magnifyingglass");
  symbol->add_css_class("quiet");
  field_.setPlaceholder(_("Find on page"));
  field_.set_hexpand(true);
  field_.set_valign(Gtk::Align::CENTER);
  notFound_.add_css_class("not-found");
  setAccessibleRole(notFound_, GTK_ACCESSIBLE_ROLE_STATUS);
  for (Gtk::Widget* part :
       {static_cast<Gtk::Widget*>(symbol), static_cast<Gtk::Widget*>(&field_),
        static_cast<Gtk::Widget*>(&notFound_), static_cast<Gtk::Widget*>(&previous_),
        static_cast<Gtk::Widget*>(&next_), static_cast<Gtk::Widget*>(&close_)})
    append(*part);
  previous_.signal_clicked().connect([this] { store_.pageSearch.findNext(kBackwards); });
  next_.signal_clicked().connect([this] { store_.pageSearch.findNext(kForwards); });
  close_.signal_clicked().connect([this] { store_.pageSearch.hideFindBar(); });
  follow_ = effect([this](const Wake& wake) { follow(wake); });
}

KeyTextField::Actions FindBar::fieldActions() {
  return {.onChange = [this](std::string text) { store_.pageSearch.setQuery(std::move(text)); },
          .onMove =
              [this](int delta) { store_.pageSearch.findNext(delta < 0 ? kBackwards : kForwards); },
          .onSubmit = [this] { store_.pageSearch.findNext(kForwards); },
          .onCancel =
              [this] {
                store_.pageSearch.hideFindBar();
                // The next key may be waiting already, and is the page's.
                flushEffects();
                store_.focusWebViewNow();
              },
          .complete = {}};
}

void FindBar::follow(const Wake& wake) {
  const auto& state = store_.pageSearch.find.get();
  const auto selected = store_.activeSpace()->selectedTab();
  const auto tab = selected ? std::optional(selected->id) : std::nullopt;
  const bool wasNotFound = state && state->matchFound == false;
  notFound_.set_visible(wasNotFound);
  previous_.set_sensitive(!wasNotFound);
  next_.set_sensitive(!wasNotFound);
  const bool isCalled = state && std::exchange(calls_, state->calls) != state->calls;
  if (state.has_value() == isShown_) {
    if (isShown_ && tab != std::exchange(tab_, tab)) return hideSoon();
    if (isCalled) field_.takeFocus();
    return;
  }
  isShown_ = state.has_value();
  setAccessibleHidden(*this, !isShown_);
  tab_ = tab;
  if (state)
    begin(*state);
  else
    end();
  if (wake.transaction)
    presence_.animateTo(isShown_ ? 1 : 0, wake.transaction->spring);
  else
    presence_.set(isShown_ ? 1 : 0);
}

void FindBar::begin(const FindState& state) {
  field_.setText(state.query);
  set_can_target(true);
  set_can_focus(true);
  // A bar that isn’t shown takes no keyboard, and one that is hidden loses it.
  set_child_visible(true);
  field_.takeFocus();
}

void FindBar::end() {
  releaseKeyboard(Gtk::Widget::gobj());
  set_can_target(false);
  set_can_focus(false);
}

void FindBar::hideSoon() {
  store_.services().scheduler.post([weak = store_.weak_from_this()] {
    if (const auto store = weak.lock()) store->pageSearch.hideFindBar();
  });
}

}  // namespace orvel
