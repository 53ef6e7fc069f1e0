#include "Views/History/HistoryContent.h"

#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/gestureclick.h>
#include <gtkmm/signallistitemfactory.h>

#include "Base/Texts.h"
#include "BrowserCore/Text/Text.h"
#include "DesignSystem/Icons.h"
#include "Models/Store/BrowserStore.h"
#include "Views/Support/Menu.h"
#include "Views/Window/Keyboard.h"

namespace orvel {

namespace {

constexpr int kHeaderGap = 10;
constexpr int kFieldGap = 8;
constexpr int kClockSize = 32;
constexpr int kNothingGap = 12;
// More than the window has room for, and done within a frame.
constexpr guint kBatch = 24;

std::vector<Glib::RefPtr<HistoryItem>> itemsOf(const std::vector<HistorySection>& sections) {
  std::vector<Glib::RefPtr<HistoryItem>> items;
  for (const auto& section : sections)
    for (const auto& entry : section.entries) {
      const bool isFirst = &entry == &section.entries.front();
      items.push_back(
          Glib::make_refptr_for_instance(new HistoryItem(entry, isFirst ? section.title : "")));
    }
  return items;
}

bool isSame(const HistoryItem& a, const HistoryItem& b) {
  return a.entry == b.entry && a.heading == b.heading;
}

}  // namespace

HistoryContent::HistoryContent(BrowserStore& store)
    : store_(store),
      history_(store),
      box_(Gtk::Orientation::VERTICAL),
      header_(Gtk::Orientation::HORIZONTAL, kHeaderGap),
      field_(fieldActions()),
      clear_(_("Clear History…")),
      items_(Gio::ListStore<HistoryItem>::create()),
      nothing_(Gtk::Orientation::VERTICAL, kNothingGap) {
  buildHeader();
  buildList();
  buildNothing();
  pages_.add(scroller_);
  pages_.add(nothing_);
  pages_.set_vexpand(true);
  box_.append(header_);
  box_.append(pages_);
  reload_ = effect([this] { reloadIfShown(); });
  itemsEffect_ = effect([this] { showItems(); });
  pageEffect_ = effect([this] { showPage(); });
}

bool HistoryContent::beginSearch() {
  field_.takeFocus();
  return true;
}

void HistoryContent::willShow() {
  history_.reload();
  field_.takeFocus();
}

KeyTextField::Actions HistoryContent::fieldActions() {
  return {.onChange = [this](std::string text) { history_.query = std::move(text); },
          .onMove =
              [this](int delta) {
                if (delta > 0) focusList();
              },
          .onSubmit = [this] { focusList(); },
          .onCancel = [this] { cancel(); },
          .complete = {}};
}

// Escape takes back what is typed, and closes the window then.
void HistoryContent::cancel() {
  if (field_.text().empty()) {
    if (auto* root = gtk_widget_get_root(box_.Gtk::Widget::gobj()); GTK_IS_WINDOW(root))
      gtk_window_close(GTK_WINDOW(root));
    return;
  }
  field_.setText("");
  history_.query = std::string();
}

void HistoryContent::buildHeader() {
  header_.add_css_class("history-header");
  auto* frame = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kFieldGap);
  frame->add_css_class("search");
  frame->set_hexpand(true);
  auto* symbol = makeIcon("magnifyingglass");
  symbol->add_css_class("quiet");
  frame->append(*symbol);
  field_.setPlaceholder(_("Search history"));
  field_.set_hexpand(true);
  field_.set_valign(Gtk::Align::CENTER);
  frame->append(field_);
  clear_.add_css_class("push");
  clear_.signal_clicked().connect([this] { store_.clearHistory(); });
  header_.append(*frame);
  header_.append(clear_);
}

void HistoryContent::buildList() {
  auto factory = Gtk::SignalListItemFactory::create();
  factory->signal_setup().connect([this](const Glib::RefPtr<Gtk::ListItem>& item) {
    item->set_child(*Gtk::make_managed<HistoryRow>(store_.services()));
  });
  factory->signal_bind().connect([this](const Glib::RefPtr<Gtk::ListItem>& item) {
    auto* row = static_cast<HistoryRow*>(item->get_child());
    // The list's own widget takes the clicks and the keys.
    if (auto* around = row->get_parent(); around && !row->item())
      installContextMenu(*around, [this, row] { return menu(*row); });
    row->show(std::dynamic_pointer_cast<HistoryItem>(item->get_item()));
  });
  auto selection = Gtk::SingleSelection::create(items_);
  selection->set_autoselect(false);
  selection->set_can_unselect(true);
  listView_.set_model(selection);
  listView_.set_factory(factory);
  listView_.add_css_class("history");
  setAccessibleLabel(listView_, _("History"));
  listView_.signal_activate().connect(
      [this](guint position) { history_.open(items_->get_item(position)->entry); });
  auto keys = Gtk::EventControllerKey::create();
  keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  keys->signal_key_pressed().connect(
      [this](guint key, guint, Gdk::ModifierType) { return keyPressed(key); }, false);
  listView_.add_controller(keys);
  scroller_.add_css_class("history-rows");
  scroller_.set_focusable(false);
  scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  scroller_.set_child(listView_);
}

void HistoryContent::buildNothing() {
  nothing_.set_valign(Gtk::Align::CENTER);
  nothing_.add_css_class("quiet");
  nothing_.append(*makeIcon("clock", kClockSize));
  nothingText_.add_css_class("serif");
  nothingText_.add_css_class("nothing");
  nothing_.append(nothingText_);
}

// A window that isn't shown asks when it is.
void HistoryContent::reloadIfShown() {
  history_.query.get();
  store_.historyRevision.get();
  const auto profile = store_.activeSpace()->profile;
  untracked([this] {
    if (box_.get_mapped()) history_.reload();
  });
}

// Only what differs is replaced, so that the others keep their widgets, the keyboard and their
// place in view.
void HistoryContent::showItems() {
  auto wanted = itemsOf(history_.sections.get());
  const guint count = items_->get_n_items();
  const auto size = static_cast<guint>(wanted.size());
  const guint common = std::min(count, size);
  guint front = 0;
  while (front < common && isSame(*items_->get_item(front), *wanted[front])) ++front;
  guint back = 0;
  while (back < common - front &&
         isSame(*items_->get_item(count - 1 - back), *wanted[size - 1 - back]))
    ++back;
  coming_.assign(wanted.begin() + front, wanted.end() - back);
  place_ = front;
  untracked([&] { fill(count - front - back); });
}

// The toolkit makes widgets for some two hundred items at once, however few are in view: given all
// together they would stop the interface for many frames.
void HistoryContent::fill(guint gone) {
  if (filling_) g_source_remove(std::exchange(filling_, 0));
  if (gone == 0 && coming_.empty()) return;
  const bool hadKeyboard = focusedRow() != nullptr;
  const auto batch = std::min<size_t>(coming_.size(), kBatch);
  items_->splice(place_, gone, {coming_.begin(), coming_.begin() + batch});
  if (hadKeyboard && items_->get_n_items() > 0 && !focusedRow()) listView_.grab_focus();
  place_ += batch;
  coming_.erase(coming_.begin(), coming_.begin() + batch);
  if (coming_.empty()) return;
  filling_ = g_idle_add(
      [](gpointer self) -> gboolean {
        static_cast<HistoryContent*>(self)->filling_ = 0;
        static_cast<HistoryContent*>(self)->fill(0);
        return G_SOURCE_REMOVE;
      },
      this);
}

void HistoryContent::showPage() {
  const bool isEmpty = history_.hasAnswer && history_.sections.get().empty();
  const bool isSearch = !text::trimmedBlanks(history_.query.get()).empty();
  nothingText_.set_text(isSearch ? _("No Results") : _("No History Yet"));
  pages_.set_visible_child(isEmpty ? static_cast<Gtk::Widget&>(nothing_) : scroller_);
}

bool HistoryContent::keyPressed(guint key) {
  auto* row = focusedRow();
  if (!row) return false;
  switch (key) {
    case GDK_KEY_Delete:
    case GDK_KEY_KP_Delete:
      history_.remove(row->item()->entry);
      return true;
    case GDK_KEY_Up:
    case GDK_KEY_KP_Up:
      if (row->item() != items_->get_item(0).get()) return false;
      field_.takeFocus();
      return true;
    default:
      return false;
  }
}

void HistoryContent::focusList() {
  if (items_->get_n_items() > 0) listView_.child_focus(Gtk::DirectionType::TAB_FORWARD);
}

HistoryRow* HistoryContent::focusedRow() {
  auto* native = focusBeside(listView_.Gtk::Widget::gobj());
  auto* focus = native ? Glib::wrap(native) : nullptr;
  return focus && focus->get_parent() == &listView_
             ? dynamic_cast<HistoryRow*>(focus->get_first_child())
             : nullptr;
}

std::vector<MenuEntry> HistoryContent::menu(const HistoryRow& row) {
  const auto entry = row.item()->entry;
  return {{.title = _("Open in New Tab"), .perform = [this, entry] { history_.open(entry); }},
          {.title = _("Copy Link"), .perform = [this, entry] { history_.copyLink(entry); }},
          {.title = _("Delete from History"),
           .perform = [this, entry] { history_.remove(entry); },
           .accelerator = "Delete",
           .beginsSection = true}};
}

}  // namespace orvel
