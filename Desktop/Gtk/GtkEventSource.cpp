#include "Desktop/Gtk/GtkEventSource.h"

#include <algorithm>
#include <optional>

#include "Desktop/Gtk/GtkDesktopWindow.h"

namespace orvel {

namespace {

KeyDown::Key keyOf(GdkEvent* event) {
  switch (gdk_key_event_get_keyval(event)) {
    case GDK_KEY_Tab:
    case GDK_KEY_ISO_Left_Tab:
    case GDK_KEY_KP_Tab:
      return KeyDown::Key::Tab;
    case GDK_KEY_Escape:
      return KeyDown::Key::Escape;
    case GDK_KEY_Return:
    case GDK_KEY_KP_Enter:
    case GDK_KEY_ISO_Enter:
      return KeyDown::Key::Return;
    default:
      return KeyDown::Key::Other;
  }
}

MouseDown::Button buttonOf(guint button) {
  switch (button) {
    case GDK_BUTTON_PRIMARY:
      return MouseDown::Button::Left;
    case GDK_BUTTON_MIDDLE:
      return MouseDown::Button::Middle;
    case GDK_BUTTON_SECONDARY:
      return MouseDown::Button::Right;
    default:
      return MouseDown::Button::Other;
  }
}

ModifierKeys modifiersIn(GdkModifierType state) {
  return {.control = (state & GDK_CONTROL_MASK) != 0,
          .alt = (state & GDK_ALT_MASK) != 0,
          .shift = (state & GDK_SHIFT_MASK) != 0};
}

// Returns whether it was there.
bool takeOut(std::vector<guint>& list, guint value) { return std::erase(list, value) > 0; }

}  // namespace

GtkEventSource::GtkEventSource(GtkDesktopWindow& window, EventMonitors& monitors)
    : desktopWindow_(window),
      monitors_(monitors),
      scroll_(window, monitors),
      controller_(gtk_event_controller_legacy_new()) {
  gtk_event_controller_set_propagation_phase(controller_, GTK_PHASE_CAPTURE);
  g_signal_connect_swapped(controller_, "event",
                           G_CALLBACK(+[](GtkEventSource* self, GdkEvent* event) -> gboolean {
                             return self->handle(event);
                           }),
                           this);
  gtk_widget_add_controller(GTK_WIDGET(window.native()), controller_);
  activeChange_ = g_signal_connect_swapped(
      window.native(), "notify::is-active",
      G_CALLBACK(+[](GtkEventSource* self) { self->activeChanged(); }), this);
}

GtkEventSource::~GtkEventSource() {
  g_signal_handler_disconnect(desktopWindow_.native(), activeChange_);
  gtk_widget_remove_controller(GTK_WIDGET(desktopWindow_.native()), controller_);
  if (latestKey_) gdk_event_unref(latestKey_);
}

bool GtkEventSource::handle(GdkEvent* event) {
  switch (gdk_event_get_event_type(event)) {
    case GDK_KEY_PRESS:
      return keyPressed(event);
    case GDK_KEY_RELEASE:
      return keyReleased(event);
    case GDK_BUTTON_PRESS:
      return buttonPressed(event);
    case GDK_BUTTON_RELEASE:
      return takeOut(swallowedButtons_, gdk_button_event_get_button(event));
    default:
      return false;
  }
}

std::optional<GtkEventSource::Modifier> GtkEventSource::modifierOf(GdkEvent* event) {
  switch (gdk_key_event_get_keyval(event)) {
    case GDK_KEY_Control_L:
    case GDK_KEY_Control_R:
      return Modifier::Control;
    case GDK_KEY_Alt_L:
    case GDK_KEY_Alt_R:
    case GDK_KEY_Meta_L:
    case GDK_KEY_Meta_R:
      return Modifier::Alt;
    case GDK_KEY_Shift_L:
    case GDK_KEY_Shift_R:
      return Modifier::Shift;
    default:
      return std::nullopt;
  }
}

bool GtkEventSource::keyPressed(GdkEvent* event) {
  if (event == latestKey_) return false;
  if (latestKey_) gdk_event_unref(latestKey_);
  latestKey_ = gdk_event_ref(event);
  const guint code = gdk_key_event_get_keycode(event);
  if (const auto modifier = modifierOf(event)) {
    std::erase_if(heldKeys_, [code](const HeldKey& held) { return held.code == code; });
    heldKeys_.push_back({code, *modifier});
    modifiersChanged();
    return false;
  }
  const KeyDown down{keyOf(event), modifiersIn(gdk_event_get_modifier_state(event))};
  takeOut(swallowedKeys_, code);
  if (monitors_.offer(desktopWindow_, down) == EventUse::PassedOn) return false;
  swallowedKeys_.push_back(code);
  return true;
}

// The state of a release still has the modifier that is let go, and with two keys of one modifier
// it goes on to be held: the keys are counted instead.
bool GtkEventSource::keyReleased(GdkEvent* event) {
  const guint code = gdk_key_event_get_keycode(event);
  const auto modifier = modifierOf(event);
  std::erase_if(heldKeys_, [&](const HeldKey& held) {
    return held.code == code || (held.code == 0 && held.modifier == modifier);
  });
  modifiersChanged();
  return takeOut(swallowedKeys_, code);
}

bool GtkEventSource::buttonPressed(GdkEvent* event) {
  const guint button = gdk_button_event_get_button(event);
  MouseDown down{.button = buttonOf(button)};
  gdk_event_get_position(event, &down.x, &down.y);
  double shadowX = 0;
  double shadowY = 0;
  gtk_native_get_surface_transform(GTK_NATIVE(desktopWindow_.native()), &shadowX, &shadowY);
  down.x -= shadowX;
  down.y -= shadowY;
  takeOut(swallowedButtons_, button);
  if (monitors_.offer(desktopWindow_, down) == EventUse::PassedOn) return false;
  swallowedButtons_.push_back(button);
  return true;
}

// Keys that are let go elsewhere are not told of.
void GtkEventSource::activeChanged() {
  if (!desktopWindow_.isActive()) {
    heldKeys_.clear();
    return modifiersChanged();
  }
  auto* seat = gdk_display_get_default_seat(gdk_display_get_default());
  auto* keyboard = seat ? gdk_seat_get_keyboard(seat) : nullptr;
  if (!keyboard) return;
  const ModifierKeys present = modifiersIn(gdk_device_get_modifier_state(keyboard));
  const auto take = [&](Modifier modifier, bool isHeld, bool wasHeld) {
    if (!isHeld)
      std::erase_if(heldKeys_, [&](const HeldKey& held) { return held.modifier == modifier; });
    else if (!wasHeld)
      heldKeys_.push_back({0, modifier});
  };
  const ModifierKeys former = modifiers();
  take(Modifier::Control, present.control, former.control);
  take(Modifier::Alt, present.alt, former.alt);
  take(Modifier::Shift, present.shift, former.shift);
  modifiersChanged();
}

ModifierKeys GtkEventSource::modifiers() const {
  const auto isHeld = [this](Modifier modifier) {
    return std::ranges::any_of(heldKeys_,
                               [&](const HeldKey& held) { return held.modifier == modifier; });
  };
  return {.control = isHeld(Modifier::Control),
          .alt = isHeld(Modifier::Alt),
          .shift = isHeld(Modifier::Shift)};
}

void GtkEventSource::modifiersChanged() {
  const ModifierKeys present = modifiers();
  if (std::exchange(offered_, present) != present)
    monitors_.offer(desktopWindow_, ModifiersChanged{present});
}

}  // namespace orvel
