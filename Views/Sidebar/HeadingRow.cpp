#include "Views/Sidebar/HeadingRow.h"

#include <gtkmm/eventcontrollerfocus.h>

#include "Base/Texts.h"
#include "DesignSystem/ShownText.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageClosing.h"

namespace orvel {

namespace {

constexpr int kSpacing = 8;

}  // namespace

HeadingRow::HeadingRow(SidebarContext& context)
    : RowWidget(kSpacing),
      context_(context),
      symbol_(makeIcon("person.fill", 15)),
      newFolder_("folder.badge.plus", _("New Folder"), 15),
      clear_(_("Clear")) {
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_LIST_ITEM);
  add_css_class("heading");
  symbol_->add_css_class("accent");
  name_.add_css_class("serif");
  name_.add_css_class("name");
  name_.set_ellipsize(Pango::EllipsizeMode::END);
  rule_.add_css_class("rule");
  rule_.set_hexpand(true);
  rule_.set_valign(Gtk::Align::CENTER);
  newFolder_.add_css_class("mark");
  clear_.add_css_class("word");
  clear_.set_valign(Gtk::Align::CENTER);
  clear_.set_tooltip_text(_("Close all of today's tabs"));
  append(*symbol_);
  append(name_);
  append(rule_);
  append(newFolder_);
  append(clear_);

  newFolder_.signal_clicked().connect([this] { context_.folders.newFolder(); });
  clear_.signal_clicked().connect(
      [this] { context_.store.pageClosing.clearToday(context_.space); });

  auto focus = Gtk::EventControllerFocus::create();
  focus->signal_leave().connect([this] { setActive(false); });
  add_controller(focus);
}

void HeadingRow::bind(const SidebarRow& row) {
  isToday_ = row.key.heading == SidebarRow::Heading::Today;
  symbol_->set_visible(!isToday_);
  look_ = effect([this] {
    const std::string name = isToday_ ? _("Today") : shownText(context_.space->name.get());
    name_.set_text(name);
    setAccessibleLabel(*this, name);
    if (!isToday_) setIcon(*symbol_, context_.space->symbol.get());
  });
  isActive_ = false;
  buttons_ = effect([this] { showButtons(); });
}

void HeadingRow::unbind() {
  look_.stop();
  buttons_.stop();
  isActive_ = false;
}

void HeadingRow::setActive(bool isActive) {
  if (std::exchange(isActive_, isActive) != isActive) buttons_ = effect([this] { showButtons(); });
}

// The button shows while the pointer or the keyboard is at the heading, and there is something for
// it to do.
void HeadingRow::showButtons() {
  clear_.set_visible(isActive_ && isToday_ && !context_.space->today.get().empty());
  newFolder_.set_visible(isActive_ && !isToday_);
}

bool HeadingRow::takeFocus() {
  setActive(true);
  auto& button = isToday_ ? static_cast<Gtk::Widget&>(clear_) : newFolder_;
  return button.get_visible() && button.grab_focus();
}

NewTabRow::NewTabRow(SidebarContext& context) : context_(context) {
  add_css_class("new-tab");
  append(*makeIcon("plus"));
  auto* title = Gtk::make_managed<Gtk::Label>(_("New Tab"));
  title->set_ellipsize(Pango::EllipsizeMode::END);
  append(*title);
  setAccessibleLabel(*this, _("New Tab"));
}

void NewTabRow::activate() { context_.store.showCommandBar(CommandBarMode::NewTab); }

}  // namespace orvel
