#include "Views/Page/LoadingBar.h"

#include <gtkmm/snapshot.h>

#include "DesignSystem/Icons.h"
#include "DesignSystem/Paint.h"

namespace orvel {

namespace {

constexpr int kHeight = 3;
constexpr float kEndRadius = 2;

}  // namespace

LoadingBar::LoadingBar()
    : Glib::ObjectBase("OrvelLoadingBar"),
      shown_(gobj(), 0, [this](double) { queue_draw(); }),
      opacity_(gobj(), 0, [this](double) { queue_draw(); }) {
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_PRESENTATION);
  set_can_target(false);
  set_valign(Gtk::Align::START);
}

void LoadingBar::setPalette(const Palette& palette) {
  color_ = palette.accent;
  queue_draw();
}

void LoadingBar::setTab(const TabRef& tab) {
  follow_.stop();
  run(state_.appear(tab && tab->isLoading.peek(), tab ? tab->progress.peek() : 0));
  if (!tab) return;
  follow_ = effect([this, tab] {
    const bool isLoading = tab->isLoading;
    const double progress = tab->progress;
    run(state_.setLoading(isLoading, progress));
    run(state_.setProgress(progress));
  });
}

void LoadingBar::run(const std::optional<LoadingBarState::Step>& step) {
  if (!step) return;
  opacity_.animateTo(step->isVisible ? 1 : 0, step->duration);
  // Last: without motion the step ends here, and the next one follows at once.
  shown_.animateTo(step->shown, step->duration, [this, load = step->load] {
    if (load) run(state_.didEnd(*load));
  });
}

void LoadingBar::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                               int& minimumBaseline, int& naturalBaseline) const {
  minimum = natural = orientation == Gtk::Orientation::VERTICAL ? kHeight : 0;
  minimumBaseline = naturalBaseline = -1;
}

void LoadingBar::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  const double width = get_width() * shown_.value();
  if (width <= 0 || opacity_.value() <= 0) return;
  const bool isRightToLeft = get_direction() == Gtk::TextDirection::RTL;
  const auto area = bounds(isRightToLeft ? get_width() - width : 0, 0, width, kHeight);
  const graphene_size_t round = {kEndRadius, kEndRadius};
  const graphene_size_t square = {0, 0};
  const auto& left = isRightToLeft ? round : square;
  const auto& right = isRightToLeft ? square : round;
  GskRoundedRect shape;
  gsk_rounded_rect_init(&shape, &area, &left, &right, &right, &left);
  auto* native = snapshot->gobj();
  const auto color = rgba(color_, opacity_.value());
  gtk_snapshot_push_rounded_clip(native, &shape);
  gtk_snapshot_append_color(native, &color, &area);
  gtk_snapshot_pop(native);
}

}  // namespace orvel
