#include <adwaita.h>

#include <filesystem>
#include <memory>
#include <string>

#include "Base/GLibScheduler.h"
#include "Engine/WebKitGtk/WebKitEngine.h"

namespace {

using namespace orvel;

std::filesystem::path programFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

struct Browser {
  GLibScheduler scheduler;
  WebKitEngine engine;
  std::shared_ptr<WebsiteDataStore> store = engine.nonPersistentDataStore();
  std::shared_ptr<WebView> view;

  Browser()
      : engine(scheduler, {.dataFolder = std::filesystem::path(g_get_user_data_dir()) / "Orvel",
                           .cacheFolder = std::filesystem::path(g_get_user_cache_dir()) /
                                          "com.brinemark.orvel",
                           .webProcessFolder = programFolder() / "../lib/web-process"}) {}

  void open(GtkApplication* application, const std::string& address) {
    view = engine.makeWebView({.websiteDataStore = store, .isGlobalPrivacyControlEnabled = true});
    auto* window = gtk_application_window_new(application);
    gtk_window_set_title(GTK_WINDOW(window), "Orvel");
    gtk_window_set_default_size(GTK_WINDOW(window), 1280, 820);
    gtk_window_set_child(GTK_WINDOW(window), view->widget());
    gtk_window_present(GTK_WINDOW(window));
    if (const auto url = URL::parse(address)) view->load({.url = *url});
  }
};

struct Session {
  std::string address;
  std::unique_ptr<Browser> browser;

  static void activate(GtkApplication* application, gpointer self) {
    auto* session = static_cast<Session*>(self);
    session->browser = std::make_unique<Browser>();
    session->browser->open(application, session->address);
  }
};

}  // namespace

int main(int count, char** arguments) {
  auto* application = adw_application_new("com.brinemark.orvel", G_APPLICATION_NON_UNIQUE);
  Session session{count > 1 ? arguments[1] : "about:blank", nullptr};
  g_signal_connect(application, "activate", G_CALLBACK(&Session::activate), &session);
  const int status = g_application_run(G_APPLICATION(application), 0, nullptr);
  session.browser.reset();
  g_object_unref(application);
  return status;
}
