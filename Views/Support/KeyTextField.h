#pragma once

#include <gtkmm/box.h>
#include <gtkmm/entry.h>
#include <gtkmm/text.h>

#include <functional>
#include <optional>
#include <string>

namespace orvel {

// The command bar's field: one line without a frame whose keys for moving, submitting and
// cancelling are calls, and which completes what is typed. The completion is inserted behind the
// caret like typing, so that undo takes it back, and is selected, so that the next letter replaces
// it. It comes only when letters were put at the end, and never while an input method composes.
class KeyTextField final : public Gtk::Box {
 public:
  struct Actions {
    // The field shows another text, its completion included.
    std::function<void(std::string)> onChange;
    std::function<void(int)> onMove;  // -1 up, 1 down
    std::function<void()> onSubmit;
    std::function<void()> onCancel;
    // From what was typed to the text with its completion behind it; absent without one.
    std::function<std::optional<std::string>(const std::string&)> complete;
  };

  explicit KeyTextField(Actions actions);
  ~KeyTextField() override {
    if (settling_) g_source_remove(settling_);
  }

  // Replaces the text as if the field were new: no completion, no call, nothing to undo.
  void setText(const std::string& text);
  std::string text() const { return entry_.get_text(); }
  void setPlaceholder(const std::string& placeholder);
  // Takes the keyboard and selects everything, so that typing replaces it.
  void takeFocus();
  Gtk::Text& entry() { return entry_; }
  // What assistive technology knows as the field.
  Gtk::Widget& accessible() { return frame_; }

 private:
  void changed();
  // A text of the other direction keeps the field's alignment.
  void align();
  void selectionChanged();
  void settleSoon();
  // Does now what a change of text or selection is waiting for.
  void settle();
  void settleChange();
  bool hasSelection() const;
  bool isCaretAtEnd() const;
  void insertCompletion(const std::string& value);
  void selectTail();
  // The selection went without a key or a click: the toolkit drops it when the desktop's own
  // selection changes hands, and on X11 it hears late of what was selected before.
  void restoreTail();
  bool keyPressed(guint key, Gdk::ModifierType state);

  Actions actions_;
  Gtk::Entry frame_;
  Gtk::Text& entry_;
  std::optional<int> tail_;    // where the selected completion begins, until the next key or click
  int restoreCount_ = 0;       // how often its selection has been restored
  bool isCompleting_ = false;  // the text changes by our own hand
  bool isComposing_ = false;   // an input method has a text of its own in the field
  bool hasChanged_ = false;
  bool wasInserted_ = false;  // the last change put letters in: deleting never completes
  guint settling_ = 0;        // the source that settles
};

}  // namespace orvel
