#include "DesignSystem/SiteIcon.h"

#include <glib.h>

#include "Base/GRef.h"
#include "DesignSystem/Icons.h"
#include "Desktop/Gtk/Textures.h"

namespace orvel {

std::string initialOf(const std::string& name) {
  if (!g_utf8_validate(name.data(), static_cast<gssize>(name.size()), nullptr)) return {};
  for (const char* at = name.c_str(); *at; at = g_utf8_next_char(at)) {
    const gunichar letter = g_utf8_get_char(at);
    if (!g_unichar_isalnum(letter)) continue;
    char text[7] = {};
    text[g_unichar_to_utf8(letter, text)] = '\0';
    return GText(g_utf8_strup(text, -1)).get();
  }
  return {};
}

SiteIcon::SiteIcon(int size, IconPlace place) {
  set_halign(Gtk::Align::CENTER);
  set_valign(Gtk::Align::CENTER);
  // The letter fills the tile; the tile does not fill its row.
  set_hexpand(false);
  set_vexpand(false);
  setIconSize(image_, size, place);
  for (const char* side : {"width-request", "height-request"})
    g_object_bind_property(image_.gobj(), "pixel-size", gobj(), side, G_BINDING_SYNC_CREATE);
  letter_.add_css_class("letter-tile");
  letter_.set_hexpand(true);
  letter_.set_vexpand(true);
  for (Gtk::Widget* part :
       {static_cast<Gtk::Widget*>(&image_), static_cast<Gtk::Widget*>(&letter_)}) {
    setAccessibleRole(*part, GTK_ACCESSIBLE_ROLE_PRESENTATION);
    append(*part);
  }
}

void SiteIcon::set(const ImageRef& icon, const std::string& name) {
  image_.set_visible(icon != nullptr);
  letter_.set_visible(icon == nullptr);
  if (icon)
    gtk_image_set_from_paintable(image_.gobj(), GDK_PAINTABLE(textureOf(icon).get()));
  else
    letter_.set_text(initialOf(name));
}

}  // namespace orvel
