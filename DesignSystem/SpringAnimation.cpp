#include "DesignSystem/SpringAnimation.h"

#include <cmath>
#include <numbers>

namespace orvel {

namespace {

AdwSpringParams* paramsOf(const Spring& spring) {
  const double frequency = 2 * std::numbers::pi / std::max(spring.response, 0.01);
  return adw_spring_params_new(spring.dampingFraction, 1, frequency * frequency);
}

}  // namespace

SpringAnimation::SpringAnimation(GtkWidget* widget, double initial,
                                 std::function<void(double)> apply)
    : widget_(widget), apply_(std::move(apply)), value_(initial), target_(initial) {}

SpringAnimation::~SpringAnimation() {
  if (!animation_) return;
  // Skipping would apply the target; pausing leaves the owner alone.
  adw_animation_pause(animation_.get());
}

bool SpringAnimation::isMoving() const {
  return animation_ && adw_animation_get_state(animation_.get()) == ADW_ANIMATION_PLAYING;
}

void SpringAnimation::step(double value, gpointer self) {
  auto* animation = static_cast<SpringAnimation*>(self);
  animation->value_ = value;
  animation->apply_(value);
}

void SpringAnimation::animateTo(double target, const Spring& spring) {
  if (target == target_ && (isMoving() || value_ == target)) return;
  const double velocity =
      spring.initialVelocity > 0 ? spring.initialVelocity * (target - value_)
      : isMoving() ? adw_spring_animation_get_velocity(ADW_SPRING_ANIMATION(animation_.get()))
                   : 0;
  target_ = target;
  if (!animation_) {
    // The parameters and the target are handed over.
    animation_ = GRef<AdwAnimation>::adopt(adw_spring_animation_new(
        widget_, value_, target, paramsOf(spring),
        adw_callback_animation_target_new(&SpringAnimation::step, this, nullptr)));
  }
  auto* spinning = ADW_SPRING_ANIMATION(animation_.get());
  auto* params = paramsOf(spring);
  adw_spring_animation_set_spring_params(spinning, params);
  adw_spring_params_unref(params);
  adw_spring_animation_set_value_from(spinning, value_);
  adw_spring_animation_set_value_to(spinning, target);
  adw_spring_animation_set_initial_velocity(spinning, velocity);
  adw_animation_play(animation_.get());
}

void SpringAnimation::set(double value) {
  if (animation_) adw_animation_pause(animation_.get());
  value_ = target_ = value;
  apply_(value);
}

}  // namespace orvel
