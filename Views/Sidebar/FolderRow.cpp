#include "Views/Sidebar/FolderRow.h"

#include <gtkmm/eventcontrollerfocus.h>
#include <gtkmm/eventcontrollerkey.h>

#include "Base/Texts.h"
#include "DesignSystem/ShownText.h"
#include "DesignSystem/StyleSheet.h"
#include "Models/Sidebar/Folders.h"
#include "Views/Sidebar/SidebarMenus.h"

namespace orvel {

FolderRow::FolderRow(SidebarContext& context)
    : context_(context), chevron_(makeIcon("chevron.right", 10)), icon_(makeIcon("folder")) {
  add_css_class("folder");
  chevron_->add_css_class("chevron");
  chevron_->add_css_class("quiet");
  name_.set_ellipsize(Pango::EllipsizeMode::END);
  name_.set_xalign(0);
  name_.set_hexpand(true);
  name_.set_halign(Gtk::Align::START);
  entry_.set_hexpand(true);
  entry_.set_valign(Gtk::Align::CENTER);
  entry_.set_placeholder_text(_("Folder name"));
  setAccessibleLabel(entry_, _("Folder name"));
  append(*chevron_);
  append(*icon_);
  append(name_);
  append(entry_);

  entry_.signal_activate().connect([this] { endRenaming(Renaming::Keep); });
  auto focus = Gtk::EventControllerFocus::create();
  focus->signal_leave().connect([this] {
    // A window that rests keeps what is being typed in it.
    auto* root = gtk_widget_get_root(entry_.Gtk::Widget::gobj());
    if (GTK_IS_WINDOW(root) && gtk_window_is_active(GTK_WINDOW(root))) endRenaming(Renaming::Keep);
  });
  entry_.add_controller(focus);
  auto keys = Gtk::EventControllerKey::create();
  keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  keys->signal_key_pressed().connect(
      [this](guint key, guint, Gdk::ModifierType) {
        if (key != GDK_KEY_Escape) return false;
        endRenaming(Renaming::Discard);
        return true;
      },
      false);
  entry_.add_controller(keys);
}

void FolderRow::bind(const SidebarRow& row) {
  folder_ = row.folder;
  setDepth(row.depth);
  look_ = effect([this] { show(); });
  renaming_ = effect([this] { showRenaming(); });
}

void FolderRow::unbind() {
  look_.stop();
  renaming_.stop();
  isRenaming_ = false;
  clearHover();
  remove_css_class("drop");
  set_has_tooltip(false);
  folder_ = nullptr;
}

void FolderRow::show() {
  const bool isOpen = folder_->isExpanded;
  const auto name = shownText(folder_->name.get());
  name_.set_text(name);
  setTooltip(*this, name, &name_);
  setAccessibleLabel(*this, name);
  gtk_accessible_update_state(GTK_ACCESSIBLE(Gtk::Widget::gobj()), GTK_ACCESSIBLE_STATE_EXPANDED,
                              isOpen, -1);
  setClass(chevron_->Gtk::Widget::gobj(), "open", isOpen);
  setIcon(*icon_, isOpen ? "folder.fill" : "folder");
  setClass(icon_->Gtk::Widget::gobj(), "open-folder", isOpen);
  setClass(icon_->Gtk::Widget::gobj(), "quiet", !isOpen);
}

void FolderRow::showRenaming() {
  const bool wasRenaming =
      std::exchange(isRenaming_, context_.folders.renamingFolderID.get() == folder_->id);
  name_.set_visible(!isRenaming_);
  entry_.set_visible(isRenaming_);
  if (isRenaming_ && !wasRenaming) entry_.set_text(folder_->name.peek());
}

void FolderRow::endRenaming(Renaming renaming) {
  // Leaving the entry ends it too, also when it leaves because it has ended.
  if (!std::exchange(isRenaming_, false)) return;
  const auto folder = folder_;
  const std::string name = entry_.get_text();
  if (entry_.has_focus() || entry_.get_first_child()->has_focus()) grab_focus();
  context_.folders.endRenaming();
  name_.set_visible(true);
  entry_.set_visible(false);
  if (renaming == Renaming::Keep) context_.folders.rename(folder, name);
}

bool FolderRow::takeFocus() {
  // Whoever asked for the renaming may be ahead of the row.
  untracked([this] { showRenaming(); });
  return isRenaming_ ? entry_.grab_focus() : grab_focus();
}

void FolderRow::activate() {
  if (!isRenaming_) context_.folders.toggle(FolderRef(folder_));
}

std::vector<MenuEntry> FolderRow::menu() { return folderMenu(context_.store, folder_); }

bool FolderRow::keyPressed(guint key) {
  const bool isOpen = folder_->isExpanded.peek();
  const bool isRightToLeft = get_direction() == Gtk::TextDirection::RTL;
  const guint opens = isRightToLeft ? GDK_KEY_Left : GDK_KEY_Right;
  const guint closes = isRightToLeft ? GDK_KEY_Right : GDK_KEY_Left;
  if (key == GDK_KEY_F2) {
    context_.folders.beginRenaming(folder_);
  } else if ((key == opens && !isOpen) || (key == closes && isOpen)) {
    activate();
  } else {
    return false;
  }
  return true;
}

}  // namespace orvel
