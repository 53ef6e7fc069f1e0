#include "DesignSystem/EasedValue.h"

#include <utility>

namespace orvel {

EasedValue::EasedValue(GtkWidget* widget, double initial, std::function<void(double)> apply)
    : widget_(widget), apply_(std::move(apply)), value_(initial) {}

EasedValue::~EasedValue() { stop(); }

void EasedValue::stop() {
  done_ = nullptr;
  if (!animation_) return;
  g_signal_handler_disconnect(animation_.get(), doneHandler_);
  adw_animation_pause(animation_.get());
  animation_ = {};
}

void EasedValue::set(double value) {
  stop();
  value_ = value;
  apply_(value);
}

void EasedValue::animateTo(double target, double seconds, std::function<void()> done) {
  if (seconds <= 0) {
    set(target);
    if (done) done();
    return;
  }
  stop();
  done_ = std::move(done);
  auto* step = adw_callback_animation_target_new(
      [](double value, gpointer self) {
        auto* eased = static_cast<EasedValue*>(self);
        eased->value_ = value;
        eased->apply_(value);
      },
      this, nullptr);
  animation_ = GRef<AdwAnimation>::adopt(
      adw_timed_animation_new(widget_, value_, target, static_cast<guint>(seconds * 1000), step));
  adw_timed_animation_set_easing(ADW_TIMED_ANIMATION(animation_.get()), ADW_EASE_OUT_CUBIC);
  doneHandler_ =
      g_signal_connect(animation_.get(), "done", G_CALLBACK(+[](AdwAnimation*, EasedValue* self) {
                         if (const auto finished = std::exchange(self->done_, nullptr)) finished();
                       }),
                       this);
  // `done` may come inside of this call and start another animation.
  const auto playing = animation_;
  adw_animation_play(playing.get());
}

}  // namespace orvel
