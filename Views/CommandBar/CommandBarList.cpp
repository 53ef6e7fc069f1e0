#include "Views/CommandBar/CommandBarList.h"

#include <cmath>

#include "Base/Texts.h"
#include "DesignSystem/Icons.h"

namespace orvel {

namespace {

// As many as the longest list has.
constexpr size_t kPreparedRows = 22;
// Milliseconds until a start, which nothing is to slow, is over.
constexpr guint kStartTakes = 1500;

// What any row may show, and what only an answer does.
const SuggestionPresentation kShown{"globe", "Title", "Subtitle", {}};  // no text
const SuggestionRowContent kPlain{.shown = kShown};
const SuggestionRowContent kAnswer{.kind = SuggestionRowContent::Kind::Answer, .shown = kShown};

}  // namespace

CommandBarList::CommandBarList()
    : Glib::ObjectBase("OrvelCommandBarList"),
      motion_(gobj(), 0, [this](double) { queue_resize(); }) {
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_LIST);
  setAccessibleLabel(*this, _("Suggestions"));
  add_css_class("bar-list");
  preparing_ = g_timeout_add_once(
      kStartTakes,
      [](gpointer self) {
        static_cast<CommandBarList*>(self)->preparing_ = g_idle_add_full(
            G_PRIORITY_LOW,
            [](gpointer list) -> gboolean {
              return static_cast<CommandBarList*>(list)->prepareRow();
            },
            self, nullptr);
      },
      this);
}

CommandBarList::~CommandBarList() {
  if (preparing_) g_source_remove(preparing_);
  for (auto& widget : widgets_) widget->unparent();
}

void CommandBarList::setRows(std::vector<SuggestionRowContent> rows,
                             const std::optional<Spring>& motion) {
  const bool moves = motion && get_mapped() && !rows_.empty();
  const double formerHeight = shownHeight();
  std::multimap<std::string, double> formerTops;
  for (size_t i = 0; moves && i < rows_.size(); ++i)
    formerTops.emplace(rows_[i].id, stretches_[i].top + offsets_[i].value_or(0) * motion_.value());

  for (size_t i = rows.size(); i < rows_.size(); ++i) widgets_[i]->set_visible(false);
  rows_ = std::move(rows);
  while (widgets_.size() < rows_.size()) addRow();
  for (size_t i = 0; i < rows_.size(); ++i) {
    widgets_[i]->set_visible(true);
    widgets_[i]->show(rows_[i]);
    widgets_[i]->setSelected(i == selected_);
  }
  measureRows();

  offsets_.assign(rows_.size(), 0.0);
  heightChange_ = moves ? formerHeight - totalHeight() : 0;
  for (size_t i = 0; moves && i < rows_.size(); ++i) {
    const auto former = formerTops.find(rows_[i].id);
    if (former == formerTops.end()) {
      offsets_[i].reset();
      continue;
    }
    offsets_[i] = former->second - stretches_[i].top;
    formerTops.erase(former);
  }
  motion_.set(moves ? 1 : 0);
  if (moves) motion_.animateTo(0, *motion);
  queue_resize();
}

void CommandBarList::setSelected(size_t index) {
  const size_t former = std::exchange(selected_, index);
  if (former == index) return;
  for (const size_t changed : {former, index})
    if (changed < rows_.size()) widgets_[changed]->setSelected(changed == index);
}

SuggestionRow& CommandBarList::addRow() {
  auto& row = *widgets_.emplace_back(std::make_unique<SuggestionRow>());
  row.set_visible(false);
  row.set_parent(*this);
  return row;
}

// Making a row, and finding the styles and fonts of its texts for the first time, is most of what
// the first key in the bar would have to wait for.
bool CommandBarList::prepareRow() {
  if (widgets_.size() < kPreparedRows) {
    auto& row = addRow();
    row.set_visible(true);
    row.show(widgets_.size() == 1 ? kAnswer : kPlain);
    int height = 0;
    gtk_widget_measure(row.Gtk::Widget::gobj(), GTK_ORIENTATION_VERTICAL, -1, nullptr, &height,
                       nullptr, nullptr);
    row.set_visible(false);
  }
  const bool isMore = widgets_.size() < kPreparedRows;
  if (!isMore) preparing_ = 0;
  return isMore;
}

std::optional<size_t> CommandBarList::rowAt(double y) const {
  for (size_t i = 0; i < stretches_.size(); ++i)
    if (y >= stretches_[i].top && y < stretches_[i].top + stretches_[i].height) return i;
  return std::nullopt;
}

void CommandBarList::measureRows() {
  stretches_.clear();
  double top = 0;
  for (size_t i = 0; i < rows_.size(); ++i) {
    int height = 0;
    gtk_widget_measure(widgets_[i]->Gtk::Widget::gobj(), GTK_ORIENTATION_VERTICAL, -1, nullptr,
                       &height, nullptr, nullptr);
    stretches_.push_back({top, static_cast<double>(height)});
    top += height;
  }
}

double CommandBarList::totalHeight() const {
  return stretches_.empty() ? 0 : stretches_.back().top + stretches_.back().height;
}

double CommandBarList::shownHeight() const {
  return std::max(totalHeight() + heightChange_ * motion_.value(), 0.0);
}

Gtk::SizeRequestMode CommandBarList::get_request_mode_vfunc() const {
  return Gtk::SizeRequestMode::CONSTANT_SIZE;
}

void CommandBarList::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                                   int& minimumBaseline, int& naturalBaseline) const {
  const bool isHeight = orientation == Gtk::Orientation::VERTICAL;
  minimum = natural = isHeight ? static_cast<int>(std::lround(shownHeight())) : 0;
  minimumBaseline = naturalBaseline = -1;
}

void CommandBarList::size_allocate_vfunc(int width, int, int) {
  const double left = motion_.value();
  for (size_t i = 0; i < rows_.size(); ++i) {
    auto& row = *widgets_[i];
    row.set_opacity(offsets_[i] ? 1 : std::clamp(1 - left, 0.0, 1.0));
    const double top = stretches_[i].top + offsets_[i].value_or(0) * left;
    const graphene_point_t at = {0, static_cast<float>(std::round(top))};
    gtk_widget_allocate(row.Gtk::Widget::gobj(), width, static_cast<int>(stretches_[i].height), -1,
                        gsk_transform_translate(nullptr, &at));
  }
}

}  // namespace orvel
