#include "Desktop/Gtk/GtkDialogs.h"

#include <adwaita.h>
#include <fmt/format.h>

#include "Base/GRef.h"
#include "Desktop/Gtk/GtkDesktopWindow.h"

namespace orvel {

namespace {

// Longer texts of pages are cut: a dialog must fit the screen.
constexpr size_t kMaxText = 4000;

GtkWindow* nativeOf(DesktopWindow* parent) {
  return parent ? static_cast<GtkDesktopWindow*>(parent)->native() : nullptr;
}

std::string shortened(const std::string& text) {
  if (text.size() <= kMaxText) return text;
  const char* end = g_utf8_find_prev_char(text.c_str(), text.c_str() + kMaxText);
  return text.substr(0, static_cast<size_t>(end - text.c_str())) + "…";
}

// One alert on screen with its extra widgets; goes with its dialog.
class AlertDialog {
 public:
  AlertDialog(DesktopWindow* parent, const Alert& alert, std::function<void(AlertAnswer)> answer)
      : answer_(std::move(answer)), buttonCount_(alert.buttons.size()) {
    dialog_ = ADW_MESSAGE_DIALOG(
        adw_message_dialog_new(nativeOf(parent), shortened(alert.messageText).c_str(), nullptr));
    adw_message_dialog_set_body(dialog_, shortened(alert.informativeText).c_str());
    // The default stands at the end of the row.
    for (size_t i = alert.buttons.size(); i-- > 0;)
      adw_message_dialog_add_response(dialog_, std::to_string(i).c_str(), alert.buttons[i].c_str());
    const std::string escape = buttonCount_ > 1 ? std::to_string(buttonCount_ - 1) : kClosed;
    if (buttonCount_ > 0) {
      adw_message_dialog_set_default_response(dialog_, alert.isDestructive ? escape.c_str() : "0");
      adw_message_dialog_set_response_appearance(
          dialog_, "0", alert.isDestructive ? ADW_RESPONSE_DESTRUCTIVE : ADW_RESPONSE_SUGGESTED);
    }
    adw_message_dialog_set_close_response(dialog_, escape.c_str());
    addExtras(alert);
    // Where its window goes without a choice, so does it.
    gtk_window_set_destroy_with_parent(GTK_WINDOW(dialog_), TRUE);
    g_signal_connect(dialog_, "response", G_CALLBACK(&AlertDialog::responded), this);
    g_signal_connect(dialog_, "destroy", G_CALLBACK(&AlertDialog::destroyed), this);
    gtk_window_present(GTK_WINDOW(dialog_));
  }

 private:
  static constexpr const char* kClosed = "closed";

  void addExtras(const Alert& alert) {
    if (alert.fields.empty() && !alert.suppression) return;
    auto* box = GTK_BOX(gtk_box_new(GTK_ORIENTATION_VERTICAL, 8));
    for (const Alert::Field& field : alert.fields) {
      auto* entry = field.isSecret ? gtk_password_entry_new() : gtk_entry_new();
      gtk_editable_set_text(GTK_EDITABLE(entry), field.text.c_str());
      if (!field.isSecret)
        gtk_entry_set_placeholder_text(GTK_ENTRY(entry), field.label.c_str());
      else
        g_object_set(entry, "placeholder-text", field.label.c_str(), nullptr);
      g_object_set(entry, "activates-default", TRUE, nullptr);
      gtk_widget_set_size_request(entry, 260, -1);
      gtk_accessible_update_property(
          GTK_ACCESSIBLE(entry), GTK_ACCESSIBLE_PROPERTY_LABEL,
          field.label.empty() ? alert.messageText.c_str() : field.label.c_str(), -1);
      gtk_box_append(box, entry);
      fields_.push_back(entry);
    }
    if (alert.suppression) {
      suppression_ = gtk_check_button_new_with_label(alert.suppression->title.c_str());
      gtk_check_button_set_active(GTK_CHECK_BUTTON(suppression_), alert.suppression->isOn);
      gtk_widget_set_halign(suppression_, GTK_ALIGN_CENTER);
      gtk_box_append(box, suppression_);
    }
    adw_message_dialog_set_extra_child(dialog_, GTK_WIDGET(box));
    if (!fields_.empty()) gtk_widget_grab_focus(fields_.front());
  }

  static void responded(AdwMessageDialog*, const char* response, gpointer data) {
    auto* self = static_cast<AlertDialog*>(data);
    std::optional<size_t> button;
    if (g_strcmp0(response, kClosed) != 0) {
      const auto index = static_cast<size_t>(g_ascii_strtoull(response, nullptr, 10));
      if (index < self->buttonCount_) button = index;
    }
    AlertAnswer answer{.button = button};
    for (GtkWidget* field : self->fields_)
      answer.fields.emplace_back(gtk_editable_get_text(GTK_EDITABLE(field)));
    if (self->suppression_)
      answer.isSuppressionOn = gtk_check_button_get_active(GTK_CHECK_BUTTON(self->suppression_));
    if (const auto give = std::exchange(self->answer_, nullptr)) give(std::move(answer));
  }

  static void destroyed(AdwMessageDialog*, gpointer data) {
    const std::unique_ptr<AlertDialog> owned(static_cast<AlertDialog*>(data));
    if (owned->answer_) owned->answer_({});
  }

  AdwMessageDialog* dialog_;
  std::function<void(AlertAnswer)> answer_;
  size_t buttonCount_;
  std::vector<GtkWidget*> fields_;
  GtkWidget* suppression_ = nullptr;
};

using Files = std::optional<std::vector<std::filesystem::path>>;

// One file panel on screen; deletes itself when it is answered.
struct FilePanel {
  GRef<GtkFileChooserNative> chooser;
  std::function<void(Files)> answer;

  void show() {
    gtk_native_dialog_set_modal(GTK_NATIVE_DIALOG(chooser.get()), TRUE);
    g_signal_connect(chooser.get(), "response", G_CALLBACK(&FilePanel::responded), this);
    gtk_native_dialog_show(GTK_NATIVE_DIALOG(chooser.get()));
  }

  static void responded(GtkNativeDialog* dialog, int response, gpointer self) {
    const std::unique_ptr<FilePanel> owned(static_cast<FilePanel*>(self));
    Files files;
    if (response == GTK_RESPONSE_ACCEPT) {
      files.emplace();
      const auto list =
          GRef<GListModel>::adopt(gtk_file_chooser_get_files(GTK_FILE_CHOOSER(dialog)));
      for (guint i = 0; i < g_list_model_get_n_items(list.get()); ++i) {
        const auto file = GRef<GFile>::adopt(G_FILE(g_list_model_get_item(list.get(), i)));
        if (const GText path(g_file_get_path(file.get())); path) files->emplace_back(path.get());
      }
    }
    owned->answer(std::move(files));
  }
};

FilePanel* makePanel(DesktopWindow* parent, const std::string& title, GtkFileChooserAction action,
                     std::function<void(Files)> answer) {
  return new FilePanel{
      GRef<GtkFileChooserNative>::adopt(gtk_file_chooser_native_new(
          title.empty() ? nullptr : title.c_str(), nativeOf(parent), action, nullptr, nullptr)),
      std::move(answer)};
}

}  // namespace

void GtkDialogs::showAlert(DesktopWindow* parent, const Alert& alert,
                           std::function<void(AlertAnswer)> answer) {
  new AlertDialog(parent, alert, std::move(answer));
}

void GtkDialogs::showOpenPanel(DesktopWindow* parent, const OpenPanel& panel,
                               std::function<void(Files)> answer) {
  const auto action = panel.allowsDirectories && !panel.allowsFiles
                          ? GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER
                          : GTK_FILE_CHOOSER_ACTION_OPEN;
  auto* shown = makePanel(parent, panel.title, action, std::move(answer));
  auto* chooser = GTK_FILE_CHOOSER(shown->chooser.get());
  gtk_file_chooser_set_select_multiple(chooser, panel.allowsMultipleSelection);
  if (!panel.mimeTypes.empty()) {
    const auto filter = GRef<GtkFileFilter>::adopt(gtk_file_filter_new());
    for (const std::string& type : panel.mimeTypes)
      gtk_file_filter_add_mime_type(filter.get(), type.c_str());
    gtk_file_chooser_add_filter(chooser, filter.get());
  }
  shown->show();
}

void GtkDialogs::showSavePanel(DesktopWindow* parent, const SavePanel& panel,
                               std::function<void(std::optional<std::filesystem::path>)> answer) {
  auto* shown = makePanel(parent, panel.title, GTK_FILE_CHOOSER_ACTION_SAVE,
                          [answer = std::move(answer)](const Files& files) {
                            if (files && !files->empty()) return answer(files->front());
                            answer(std::nullopt);
                          });
  gtk_file_chooser_set_current_name(GTK_FILE_CHOOSER(shown->chooser.get()),
                                    panel.proposedName.c_str());
  shown->show();
}

}  // namespace orvel
