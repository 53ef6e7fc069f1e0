#include "Views/Window/AboutWindow.h"

#include <adwaita.h>

#include "Base/Texts.h"

namespace orvel {

void presentAboutWindow(GtkWindow* parent, const std::string& version) {
  static GtkWindow* shown = nullptr;
  if (!shown) {
    shown = GTK_WINDOW(g_object_new(ADW_TYPE_ABOUT_WINDOW, "application-name", "Orvel",
                                    "application-icon", "com.brinemark.orvel", "version",
                                    version.c_str(), "developer-name", "Brinemark", "comments",
                                    _("Browse the web with tabs in a sidebar"), nullptr));
    g_object_add_weak_pointer(G_OBJECT(shown), reinterpret_cast<gpointer*>(&shown));
  }
  gtk_window_set_transient_for(shown, parent);
  gtk_window_present(shown);
}

}  // namespace orvel
