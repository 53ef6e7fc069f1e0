#include "Views/History/HistoryRow.h"

#include <gtkmm/gestureclick.h>

#include "BrowserCore/Addresses/URLInput.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/ShownText.h"
#include "Support/LocalDates.h"

namespace orvel {

namespace {

constexpr int kGap = 11;
constexpr int kHeadingGap = 8;
// A longer site would leave nothing for the title, and is cut before it is.
constexpr int kMaxSite = 40;

void setUp(Gtk::Label& label, const char* style) {
  label.add_css_class(style);
  label.set_single_line_mode(true);
  label.set_xalign(0);
}

}  // namespace

HistoryRow::HistoryRow(const Services& services)
    : Gtk::Box(Gtk::Orientation::VERTICAL),
      services_(services),
      heading_(Gtk::Orientation::HORIZONTAL, kHeadingGap),
      entry_(Gtk::Orientation::HORIZONTAL, kGap) {
  heading_.add_css_class("heading");
  setUp(day_, "name");
  day_.add_css_class("serif");
  auto* rule = Gtk::make_managed<Gtk::Box>();
  rule->add_css_class("rule");
  rule->set_hexpand(true);
  rule->set_valign(Gtk::Align::CENTER);
  heading_.append(day_);
  heading_.append(*rule);

  // The day is no part of its first visit.
  auto click = Gtk::GestureClick::create();
  click->set_button(0);
  click->signal_pressed().connect([gesture = click.get()](int, double, double) {
    gesture->set_state(Gtk::EventSequenceState::CLAIMED);
  });
  heading_.add_controller(click);

  entry_.add_css_class("history-entry");
  setUp(title_, "title");
  title_.set_ellipsize(Pango::EllipsizeMode::END);
  setUp(site_, "small");
  site_.add_css_class("quiet");
  site_.set_hexpand(true);
  site_.set_max_width_chars(kMaxSite);
  setUp(time_, "small");
  time_.add_css_class("quiet");
  time_.add_css_class("time");
  for (Gtk::Widget* part : {static_cast<Gtk::Widget*>(&icon_), static_cast<Gtk::Widget*>(&title_),
                            static_cast<Gtk::Widget*>(&site_), static_cast<Gtk::Widget*>(&time_)})
    entry_.append(*part);
  append(heading_);
  append(entry_);
}

void HistoryRow::show(const Glib::RefPtr<HistoryItem>& item) {
  item_ = item;
  const auto& entry = item->entry;
  const auto site = shownText(displayHost(entry.url));
  const auto title = entry.title.empty() ? site : shownText(entry.title);
  const auto time = local_dates::shortTime(entry.lastVisit);
  heading_.set_visible(!item->heading.empty());
  day_.set_text(item->heading);
  title_.set_text(title);
  site_.set_text(site);
  const bool isLong = g_utf8_strlen(site.c_str(), -1) > kMaxSite;
  site_.set_ellipsize(isLong ? Pango::EllipsizeMode::END : Pango::EllipsizeMode::NONE);
  time_.set_text(time);
  setTooltip(entry_, title + "\n" + shownText(entry.url.text()));
  // The list's own widget around the row has the keyboard, and is what is read out.
  if (auto* spoken = get_parent()) setAccessibleLabel(*spoken, title + ", " + site + ", " + time);
  showIcon(site);
}

void HistoryRow::showIcon(const std::string& site) {
  const std::string host(item_->entry.url.host().value_or(""));
  const auto known = services_.favicons.knownImage(host);
  icon_.set(known.value_or(nullptr), site);
  reading_ = known ? TaskHandle()
                   : services_.scheduler.start(readIcon(this, services_.favicons, host, site));
}

// A cancelled task may have outlived its row.
Task<> HistoryRow::readIcon(HistoryRow* row, FaviconStore& icons, std::string host,
                            std::string site) {
  auto reading = icons.image(std::move(host));
  const ImageRef image = co_await std::move(reading);
  const bool hasEnded = co_await isCancelled();
  if (!hasEnded && image) row->icon_.set(image, site);
}

}  // namespace orvel
