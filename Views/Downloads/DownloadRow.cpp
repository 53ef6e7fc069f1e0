#include "Views/Downloads/DownloadRow.h"

#include "Base/Texts.h"
#include "DesignSystem/ShownText.h"
#include "DesignSystem/StyleSheet.h"

namespace orvel {

namespace {

constexpr int kGap = 12;
constexpr int kLineGap = 0;

std::string stateOf(const DownloadManager::Item& item) {
  switch (item.state) {
    case DownloadManager::Item::State::Downloading:
      return _("Downloading");
    case DownloadManager::Item::State::Finished:
      return _("Finished");
    case DownloadManager::Item::State::Failed:
      return item.isDiskFull ? _("Failed: the disk is full") : _("Failed");
  }
  return {};
}

}  // namespace

DownloadRow::DownloadRow(const DownloadManager::Item& item, const Palette& palette, Actions actions)
    : item_(item),
      actions_(std::move(actions)),
      line_(Gtk::Orientation::HORIZONTAL, kGap),
      words_(Gtk::Orientation::VERTICAL, kLineGap),
      reveal_("magnifyingglass", _("Show in Files")),
      cancel_("xmark", _("Cancel"), 14) {
  build();
  sign_.setPalette(palette);
  show(item);
}

void DownloadRow::build() {
  line_.add_css_class("download");
  name_.add_css_class("name");
  name_.set_xalign(0);
  name_.set_ellipsize(Pango::EllipsizeMode::MIDDLE);
  name_.set_single_line_mode(true);
  state_.add_css_class("small");
  state_.set_xalign(0);
  words_.set_hexpand(true);
  words_.set_valign(Gtk::Align::CENTER);
  words_.append(name_);
  words_.append(bar_);
  words_.append(state_);
  line_.append(sign_);
  line_.append(words_);
  for (IconButton* button : {&reveal_, &cancel_}) {
    button->set_valign(Gtk::Align::CENTER);
    line_.append(*button);
  }
  reveal_.signal_clicked().connect([this] { actions_.reveal(item_); });
  cancel_.signal_clicked().connect([this] { actions_.cancel(item_); });
  set_child(line_);
}

void DownloadRow::show(const DownloadManager::Item& item) {
  using enum DownloadManager::Item::State;
  item_ = item;
  const std::string name = shownText(item.destination.filename().string());
  const std::string state = stateOf(item);
  name_.set_text(name);
  sign_.setFile(item.destination.filename().string());
  state_.set_text(state);
  setClass(state_.Gtk::Widget::gobj(), "danger", item.state == Failed);
  setClass(state_.Gtk::Widget::gobj(), "quiet", item.state != Failed);
  const bool hasBar = item.state == Downloading && item.isLengthKnown;
  bar_.set_visible(hasBar);
  bar_.set_fraction(item.progress);
  state_.set_visible(!hasBar);
  reveal_.set_visible(item.state == Finished);
  cancel_.set_visible(item.state == Downloading);
  set_activatable(item.state == Finished);
  setTooltip(name_, name, &name_);
  setAccessibleLabel(*this, name);
  setAccessibleDescription(*this, state);
}

}  // namespace orvel
