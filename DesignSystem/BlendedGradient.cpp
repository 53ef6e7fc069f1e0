#include "DesignSystem/BlendedGradient.h"

#include <gtkmm/snapshot.h>

#include "DesignSystem/Paint.h"
#include "DesignSystem/Palette.h"

namespace orvel {

Theme::Backdrop blend(const Theme::Backdrop& a, const Theme::Backdrop& b, double amount) {
  return {mix(a.top, b.top, amount), mix(a.bottom, b.bottom, amount)};
}

BlendedGradient::BlendedGradient()
    : Glib::ObjectBase("OrvelBlendedGradient"),
      progress_(gobj(), 1, [this](double amount) { show(blend(start_, end_, amount)); }) {
  set_can_target(false);
}

void BlendedGradient::set(const Theme::Backdrop& backdrop) {
  isSet_ = true;
  start_ = end_ = backdrop;
  progress_.set(1);
}

void BlendedGradient::animateTo(const Theme::Backdrop& backdrop, const Spring& spring) {
  if (!isSet_) return set(backdrop);
  if (backdrop == end_) return;
  start_ = shown_;
  end_ = backdrop;
  progress_.set(0);
  progress_.animateTo(1, spring);
}

void BlendedGradient::setCornerRadius(double radius) {
  if (std::exchange(radius_, radius) != radius) queue_draw();
}

void BlendedGradient::show(const Theme::Backdrop& backdrop) {
  if (shown_ == backdrop) return;
  shown_ = backdrop;
  queue_draw();
}

void BlendedGradient::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  auto* native = snapshot->gobj();
  const auto area = bounds(0, 0, get_width(), get_height());
  if (radius_ > 0) {
    GskRoundedRect rounded;
    gsk_rounded_rect_init_from_rect(&rounded, &area, static_cast<float>(radius_));
    gtk_snapshot_push_rounded_clip(native, &rounded);
  }
  const graphene_point_t from = {0, 0};
  const graphene_point_t to = {0, static_cast<float>(get_height())};
  const GskColorStop stops[] = {{0, rgba(shown_.top)}, {1, rgba(shown_.bottom)}};
  gtk_snapshot_append_linear_gradient(native, &area, &from, &to, stops, std::size(stops));
  if (radius_ > 0) gtk_snapshot_pop(native);
}

}  // namespace orvel
