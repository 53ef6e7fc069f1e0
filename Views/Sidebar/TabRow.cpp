#include "Views/Sidebar/TabRow.h"

#include "Base/Texts.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "DesignSystem/ShownText.h"
#include "DesignSystem/StyleSheet.h"
#include "DesignSystem/TextScale.h"
#include "Models/Commands/ActionCatalog.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageClosing.h"
#include "Views/Sidebar/SidebarMenus.h"

namespace orvel {

TabRow::TabRow(SidebarContext& context)
    : context_(context),
      mute_("speaker.wave.2.fill", _("Mute Tab"), 15),
      home_("arrow.uturn.backward", _("Back to the pinned page"), 15),
      close_("xmark", withKeys(ActionID::CloseTab), 14) {
  add_css_class("tab");
  site_.add_css_class("site");
  title_.add_css_class("title");
  title_.set_ellipsize(Pango::EllipsizeMode::END);
  title_.set_xalign(0);
  title_.set_hexpand(true);
  // A title in a script of the other direction keeps the row's alignment.
  title_.set_halign(Gtk::Align::START);
  title_.set_single_line_mode(true);
  ends_.add_css_class("ends");
  append(site_);
  append(title_);
  append(ends_);

  const auto addSign = [this](Gtk::Image& sign, const char* symbol, const char* help) {
    setIcon(sign, symbol);
    setIconSize(sign, 15);
    sign.add_css_class("sign");
    sign.add_css_class("quiet");
    setTooltip(sign, help);
    setAccessibleLabel(sign, help);
    ends_.append(sign);
  };
  addSign(unresponsive_, "hourglass", _("This page isn’t answering"));
  ends_.append(mute_);
  addSign(split_, "rectangle.split.2x1", _("In split view"));
  for (auto* button : {&mute_, &home_, &close_}) {
    button->add_css_class("mark");
    // The row's own keys and menu do what they do; Tab goes from row to row.
    button->set_focusable(false);
  }
  ends_.append(home_);
  ends_.append(close_);
  mute_.signal_clicked().connect([this] { tab_->toggleMute(); });
  home_.signal_clicked().connect([this] {
    if (const auto& home = tab_->pinnedURL.peek()) tab_->load(*home);
  });
  close_.signal_clicked().connect([this] { context_.store.pageClosing.close(tab_); });

  makeTabDragSource(
      *this, context_.drag, [this] { return tab_; },
      [this](bool isDragged) { setClass(Gtk::Widget::gobj(), "dragged", isDragged); });
}

void TabRow::bind(const SidebarRow& row) {
  tab_ = row.tabs.front();
  setDepth(row.depth);
  page_ = effect([this] { showPage(); });
  state_ = effect([this] { showState(); });
  buttons_ = effect([this] { showButtons(); });
}

void TabRow::unbind() {
  page_.stop();
  state_.stop();
  buttons_.stop();
  clearHover();
  remove_css_class("dragged");
  remove_css_class("drop");
  // A tooltip on show must not outlive its row.
  set_has_tooltip(false);
  tab_ = nullptr;
}

void TabRow::showPage() {
  const auto title = shownText(tab_->displayTitle());
  title_.set_text(title);
  setTooltip(*this, title, &title_);
  setAccessibleLabel(*this, title);
  const auto& url = tab_->url.get();
  site_.set(tab_->favicon(), url ? displayHost(*url) : std::string());
}

void TabRow::showState() {
  const auto& selected = context_.space->selectedTabID.get();
  const bool isSelected = selected == tab_->id;
  setClass(Gtk::Widget::gobj(), "selected", isSelected);
  setClass(Gtk::Widget::gobj(), "split", context_.space->isInSplit(*tab_));
  setClass(Gtk::Widget::gobj(), "asleep",
           !isSelected && tab_->url.get() && !tab_->liveWebView() && tab_->lastActiveAt);
  gtk_accessible_update_state(GTK_ACCESSIBLE(Gtk::Widget::gobj()), GTK_ACCESSIBLE_STATE_SELECTED,
                              isSelected, -1);
}

void TabRow::showButtons() {
  const bool isMuted = tab_->isMuted;
  mute_.set_visible(tab_->isPlayingMedia || isMuted);
  mute_.setSymbol(isMuted ? "speaker.slash.fill" : "speaker.wave.2.fill");
  mute_.setHelp(isMuted ? _("Unmute Tab") : _("Mute Tab"));
  split_.set_visible(context_.space->isInSplit(*tab_));
  unresponsive_.set_visible(tab_->panels.isUnresponsive);
  home_.set_visible(isHovered_ && tab_->hasWanderedFromPin());
  close_.set_visible(isHovered_);
  const auto children = {unresponsive_.get_visible(), mute_.get_visible(), split_.get_visible(),
                         home_.get_visible(), isHovered_};
  ends_.set_visible(std::ranges::any_of(children, std::identity()));
}

void TabRow::activate() { context_.store.select(tab_, context_.space); }

void TabRow::middleClicked() { context_.store.pageClosing.close(tab_); }

void TabRow::hoverChanged(bool isHovered) {
  isHovered_ = isHovered;
  if (tab_) buttons_ = effect([this] { showButtons(); });
}

std::vector<MenuEntry> TabRow::menu() { return tabMenu(context_.store, context_.space, tab_); }

bool TabRow::keyPressed(guint key) {
  if (key != GDK_KEY_Delete && key != GDK_KEY_KP_Delete) return false;
  context_.store.pageClosing.close(tab_);
  return true;
}

}  // namespace orvel
