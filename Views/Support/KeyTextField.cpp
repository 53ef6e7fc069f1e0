#include "Views/Support/KeyTextField.h"

#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/eventcontrollerlegacy.h>
#include <gtkmm/window.h>

#include <fmt/ranges.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "BrowserCore/Addresses/URLInput.h"
#include "BrowserCore/Text/Text.h"
#include "DesignSystem/Icons.h"

namespace orvel {

namespace {

constexpr int kMaxRestores = 3;

// That of the first letter that has one.
std::optional<Gtk::TextDirection> directionOf(const std::string& text) {
  const auto length = static_cast<int32_t>(text.size());
  for (int32_t at = 0; at < length;) {
    UChar32 character = 0;
    U8_NEXT(text.data(), at, length, character);
    const auto direction = character < 0 ? U_OTHER_NEUTRAL : u_charDirection(character);
    if (direction == U_LEFT_TO_RIGHT) return Gtk::TextDirection::LTR;
    if (direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC)
      return Gtk::TextDirection::RTL;
  }
  return std::nullopt;
}

// A text in one line. An address that was broken into several is put together again, words are
// kept apart.
std::string inOneLine(const std::string& text) {
  constexpr std::string_view kBreaks = "\n\r\t\v\f";
  if (text.find_first_of(kBreaks) == std::string::npos) return text;
  std::vector<std::string> parts;
  for (size_t at = 0; at <= text.size();) {
    const size_t end = std::min(text.find_first_of(kBreaks, at), text.size());
    if (const auto part = text::trimmed(std::string_view(text).substr(at, end - at)); !part.empty())
      parts.emplace_back(part);
    at = end + 1;
  }
  const bool isAddress = !parts.empty() && URLInput::explicitURL(parts.front()) &&
                         std::ranges::none_of(parts, [](const std::string& part) {
                           return part.find(' ') != std::string::npos;
                         });
  return fmt::format("{}", fmt::join(parts, isAddress ? "" : " "));
}

}  // namespace

// The toolkit tells the text of an entry to assistive technology, and that of a bare field to
// nobody.
KeyTextField::KeyTextField(Actions actions)
    : actions_(std::move(actions)),
      entry_(*Glib::wrap(GTK_TEXT(gtk_editable_get_delegate(GTK_EDITABLE(frame_.gobj()))))) {
  setAccessibleRole(frame_, GTK_ACCESSIBLE_ROLE_SEARCH_BOX);
  frame_.add_css_class("bare");
  frame_.set_has_frame(false);
  frame_.set_hexpand(true);
  entry_.set_enable_undo(true);
  append(frame_);
  entry_.property_has_focus().signal_changed().connect([this] { align(); });
  entry_.signal_changed().connect(sigc::mem_fun(*this, &KeyTextField::changed));
  entry_.get_buffer()->signal_inserted_text().connect(
      [this](guint, const char*, guint) { wasInserted_ = true; });
  entry_.get_buffer()->signal_deleted_text().connect(
      [this](guint, guint) { wasInserted_ = false; });
  g_signal_connect(entry_.gobj(), "activate", G_CALLBACK(+[](GtkText*, gpointer self) {
                     auto* field = static_cast<KeyTextField*>(self);
                     field->settle();
                     field->actions_.onSubmit();
                   }),
                   this);
  g_signal_connect(entry_.gobj(), "preedit-changed",
                   G_CALLBACK(+[](GtkText*, const char* preedit, gpointer self) {
                     static_cast<KeyTextField*>(self)->isComposing_ = *preedit != '\0';
                   }),
                   this);
  for (const char* signal : {"notify::cursor-position", "notify::selection-bound"})
    g_signal_connect(entry_.gobj(), signal, G_CALLBACK(+[](GtkText*, GParamSpec*, gpointer self) {
                       static_cast<KeyTextField*>(self)->selectionChanged();
                     }),
                     this);
  auto touch = Gtk::EventControllerLegacy::create();
  touch->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  touch->signal_event().connect(
      [this](const Glib::RefPtr<const Gdk::Event>& event) {
        const auto type = event->get_event_type();
        // A key that comes in one batch with the loss of the selection finds it restored.
        if (type == Gdk::Event::Type::KEY_PRESS) restoreTail();
        if (type == Gdk::Event::Type::KEY_PRESS || type == Gdk::Event::Type::BUTTON_PRESS ||
            type == Gdk::Event::Type::TOUCH_BEGIN)
          tail_.reset();
        return false;
      },
      false);
  add_controller(touch);
  // The keys that neither the input method nor the editing of the text has taken.
  auto keys = Gtk::EventControllerKey::create();
  keys->signal_key_pressed().connect(
      [this](guint key, guint, Gdk::ModifierType state) { return keyPressed(key, state); }, false);
  add_controller(keys);
}

void KeyTextField::setText(const std::string& text) {
  isCompleting_ = true;
  entry_.set_text(text);
  isCompleting_ = false;
  tail_.reset();
  hasChanged_ = false;
}

void KeyTextField::setPlaceholder(const std::string& placeholder) {
  entry_.set_placeholder_text(placeholder);
  setAccessibleLabel(frame_, placeholder);
}

void KeyTextField::takeFocus() {
  entry_.grab_focus();
  // The caret at the beginning shows an address from its beginning.
  entry_.select_region(-1, 0);
}

// The toolkit begins a text at the side where its own direction does, and one without letters where
// the keyboard's does.
void KeyTextField::align() {
  auto direction = directionOf(entry_.get_text());
  auto* keyboard = gdk_seat_get_keyboard(gdk_display_get_default_seat(get_display()->gobj()));
  if (!direction && entry_.has_focus() && keyboard)
    direction = gdk_device_get_direction(keyboard) == PANGO_DIRECTION_RTL ? Gtk::TextDirection::RTL
                                                                          : Gtk::TextDirection::LTR;
  const bool isOther = direction && *direction != get_direction();
  gtk_editable_set_alignment(GTK_EDITABLE(entry_.gobj()), isOther ? 1 : 0);
}

void KeyTextField::changed() {
  align();
  if (isCompleting_) return;
  tail_.reset();
  hasChanged_ = true;
  settleSoon();
}

void KeyTextField::selectionChanged() {
  if (tail_ && !hasSelection()) settleSoon();
}

// Typing over a selection is two changes, and the caret follows after the second: what came of a
// key is read when it is done, and before the next key.
void KeyTextField::settleSoon() {
  if (settling_) return;
  settling_ = g_idle_add_full(
      G_PRIORITY_HIGH,
      [](gpointer self) -> gboolean {
        static_cast<KeyTextField*>(self)->settle();
        return G_SOURCE_REMOVE;
      },
      this, nullptr);
}

void KeyTextField::settle() {
  if (settling_) g_source_remove(std::exchange(settling_, 0));
  if (std::exchange(hasChanged_, false))
    settleChange();
  else
    restoreTail();
}

void KeyTextField::settleChange() {
  const std::string given = entry_.get_text();
  const std::string value = inOneLine(given);
  const bool wasInserted = wasInserted_;
  if (value != given) {
    isCompleting_ = true;
    entry_.set_text(value);
    entry_.set_position(-1);
    isCompleting_ = false;
  }
  if (wasInserted && !isComposing_ && isCaretAtEnd()) insertCompletion(value);
  actions_.onChange(text());
}

bool KeyTextField::hasSelection() const {
  int begin = 0;
  int end = 0;
  return entry_.get_selection_bounds(begin, end);
}

bool KeyTextField::isCaretAtEnd() const {
  return !hasSelection() && entry_.get_position() == static_cast<int>(entry_.get_text_length());
}

void KeyTextField::insertCompletion(const std::string& value) {
  const auto completed = actions_.complete ? actions_.complete(value) : std::nullopt;
  if (!completed || completed->size() <= value.size()) return;
  const std::string tail = completed->substr(value.size());
  const int typedEnd = entry_.get_text_length();
  int end = typedEnd;
  isCompleting_ = true;
  gtk_editable_insert_text(GTK_EDITABLE(entry_.gobj()), tail.c_str(), -1, &end);
  isCompleting_ = false;
  tail_ = typedEnd;
  restoreCount_ = 0;
  selectTail();
}

// The caret stays where the person types.
void KeyTextField::selectTail() { entry_.select_region(entry_.get_text_length(), *tail_); }

// Another application that takes the desktop's selection keeps it in the end.
void KeyTextField::restoreTail() {
  if (!tail_ || hasSelection()) return;
  auto* root = gtk_widget_get_root(Gtk::Widget::gobj());
  const bool isActive = GTK_IS_WINDOW(root) && gtk_window_is_active(GTK_WINDOW(root));
  if (++restoreCount_ <= kMaxRestores && isActive) selectTail();
}

bool KeyTextField::keyPressed(guint key, Gdk::ModifierType state) {
  const auto modifiers = Gdk::ModifierType::SHIFT_MASK | Gdk::ModifierType::CONTROL_MASK |
                         Gdk::ModifierType::ALT_MASK | Gdk::ModifierType::SUPER_MASK;
  if (isComposing_ || (state & modifiers) != Gdk::ModifierType()) return false;
  switch (key) {
    case GDK_KEY_Up:
    case GDK_KEY_KP_Up:
      actions_.onMove(-1);
      return true;
    case GDK_KEY_Down:
    case GDK_KEY_KP_Down:
      actions_.onMove(1);
      return true;
    case GDK_KEY_Escape:
      actions_.onCancel();
      return true;
    default:
      return false;
  }
}

}  // namespace orvel
