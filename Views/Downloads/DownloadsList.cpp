#include "Views/Downloads/DownloadsList.h"

#include "Base/Texts.h"

namespace orvel {

namespace {

constexpr int kWidth = 328;

}  // namespace

DownloadsList::DownloadsList(Downloads& downloads)
    : Gtk::Box(Gtk::Orientation::VERTICAL),
      downloads_(downloads),
      clear_(_("Clear")),
      nothing_(_("Nothing downloaded yet.")) {
  add_css_class("downloads");
  set_size_request(kWidth, -1);
  auto* head = Gtk::make_managed<Gtk::Box>();
  head->add_css_class("panel-head");
  auto* title = Gtk::make_managed<Gtk::Label>(_("Download"));
  title->add_css_class("serif");
  title->add_css_class("title");
  title->set_xalign(0);
  title->set_hexpand(true);
  clear_.add_css_class("word");
  clear_.set_valign(Gtk::Align::CENTER);
  clear_.signal_clicked().connect([this] { downloads_.manager().clearFinished(); });
  head->append(*title);
  head->append(clear_);
  nothing_.add_css_class("quiet");
  nothing_.add_css_class("nothing-here");
  list_.set_selection_mode(Gtk::SelectionMode::NONE);
  setAccessibleLabel(list_, _("Download"));
  list_.signal_row_activated().connect(
      [this](Gtk::ListBoxRow* row) { downloads_.open(static_cast<DownloadRow*>(row)->item()); });
  append(*head);
  append(nothing_);
  append(list_);
  follow_ = effect([this] {
    const auto items = downloads_.manager().items.get();
    untracked([&] { show(items); });
  });
}

void DownloadsList::setPalette(const Palette& palette) {
  palette_ = palette;
  for (const auto& row : rows_) row->setPalette(palette);
}

bool DownloadsList::showsSameItems(const std::vector<DownloadManager::Item>& items) const {
  return std::ranges::equal(items, rows_, {}, &DownloadManager::Item::id,
                            [](const auto& row) { return row->item().id; });
}

void DownloadsList::show(const std::vector<DownloadManager::Item>& items) {
  using State = DownloadManager::Item::State;
  if (!showsSameItems(items)) {
    for (const auto& row : rows_) list_.remove(*row);
    rows_.clear();
    for (const auto& item : items) {
      rows_.push_back(std::make_unique<DownloadRow>(
          item, palette_,
          DownloadRow::Actions{
              .reveal = [this](const auto& shown) { downloads_.reveal(shown); },
              .cancel = [this](const auto& shown) { downloads_.manager().cancel(shown.id); }}));
      list_.append(*rows_.back());
    }
  }
  for (size_t i = 0; i < items.size(); ++i)
    if (rows_[i]->item() != items[i]) rows_[i]->show(items[i]);
  nothing_.set_visible(items.empty());
  list_.set_visible(!items.empty());
  clear_.set_visible(
      std::ranges::any_of(items, [](auto& item) { return item.state != State::Downloading; }));
}

}  // namespace orvel
