#include "App/Application.h"

#include <fmt/format.h>
#include <glib-unix.h>
#include <signal.h>

#include <filesystem>
#include <utility>

#include "App/Installation.h"
#include "Base/GRef.h"
#include "Base/Texts.h"

namespace orvel {

namespace {

constexpr const char* kIdentifier = "com.brinemark.orvel";
// What the bus knows them by; the latter stands in the desktop file too.
constexpr const char* kOpenAddress = "open-address";
constexpr const char* kNewTab = "new-tab";
constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

std::filesystem::path dataFolder() {
  return std::filesystem::path(g_get_user_data_dir()) / "Orvel";
}

// Blocks until the person has read it.
void tellInDialog(const std::string& message, const std::string& detail) {
  auto* dialog = gtk_message_dialog_new(nullptr, GtkDialogFlags(0), GTK_MESSAGE_ERROR,
                                        GTK_BUTTONS_OK, "%s", message.c_str());
  gtk_message_dialog_format_secondary_text(GTK_MESSAGE_DIALOG(dialog), "%s", detail.c_str());
  gtk_window_set_title(GTK_WINDOW(dialog), "Orvel");
  auto* loop = g_main_loop_new(nullptr, FALSE);
  g_signal_connect_swapped(dialog, "response", G_CALLBACK(g_main_loop_quit), loop);
  gtk_window_present(GTK_WINDOW(dialog));
  g_main_loop_run(loop);
  g_main_loop_unref(loop);
  gtk_window_destroy(GTK_WINDOW(dialog));
}

// Who starts the program from now on gets one of their own, and does not talk to one that has
// stopped listening.
void giveNameBack(GApplication* application) {
  constexpr int kMaxMilliseconds = 500;
  if (auto* bus = g_application_get_dbus_connection(application))
    g_dbus_connection_call(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus", "ReleaseName", g_variant_new("(s)", kIdentifier),
                           nullptr, G_DBUS_CALL_FLAGS_NONE, kMaxMilliseconds, nullptr, nullptr,
                           nullptr);
}

bool hasSessionBus() {
  const auto bus =
      GRef<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  return static_cast<bool>(bus);
}

}  // namespace

Application::Application() {
  // Without a bus there is nobody to ask whether the program runs already; the lock then decides.
  const auto uniqueness =
      hasSessionBus() ? G_APPLICATION_HANDLES_OPEN
                      : GApplicationFlags(G_APPLICATION_HANDLES_OPEN | G_APPLICATION_NON_UNIQUE);
  // libadwaita's own would read its style sheets first of all, before the page's process is
  // started.
  application_ = gtk_application_new(kIdentifier, uniqueness);
  g_set_application_name("Orvel");
  // The session manager tells of its end, and waits for `query-end`.
  g_object_set(application_, "register-session", TRUE, nullptr);
}

Application::~Application() {
  browser_.reset();
  g_clear_object(&application_);
}

int Application::run(StartOptions options) {
  wantsNewTab_ = options.wantsNewTab;
  startAddresses_ = options.addresses;
  auto* application = G_APPLICATION(application_);
  makeActions();
  GError* rawError = nullptr;
  if (!g_application_register(application, nullptr, &rawError)) {
    const GErrorRef error(rawError);
    fmt::print(stderr, "orvel: {}\n", error->message);
    return 1;
  }
  if (g_application_get_is_remote(application)) {
    for (const std::string& address : options.addresses)
      g_action_group_activate_action(G_ACTION_GROUP(application), kOpenAddress,
                                     g_variant_new_string(address.c_str()));
    if (wantsNewTab_)
      g_action_group_activate_action(G_ACTION_GROUP(application), kNewTab, nullptr);
    else if (options.addresses.empty())
      g_application_activate(application);
    // What was asked must have left before this process ends.
    if (auto* bus = g_application_get_dbus_connection(application))
      g_dbus_connection_flush_sync(bus, nullptr, nullptr);
    // It ends with the process: the library complains of one that ends without having run.
    application_ = nullptr;
    return 0;
  }

  // One that has just been told to quit takes a moment.
  constexpr Duration kPatience = 5s;
  lock_ = InstanceLock::take(dataFolder(), kPatience);
  if (!lock_) {
    const std::string folder = dataFolder().string();
    const std::string advice = filled(
        _("Another Orvel is using {folder}. Quit it and start again."), {{"folder", folder}});
    fmt::print(stderr, "orvel: {}\n", advice);
    tellInDialog(_("Orvel is already running"), advice);
    return 1;
  }

  browser_ = std::make_unique<Browser>(application_, Installation::current());
  // Closing the window does not end the program.
  g_application_hold(application);
  for (const int number : kSignals)
    g_unix_signal_add(
        number,
        [](gpointer self) -> gboolean {
          g_application_quit(G_APPLICATION(self));
          return G_SOURCE_CONTINUE;
        },
        application);

  g_signal_connect(application, "activate", G_CALLBACK(+[](GApplication*, gpointer data) {
                     auto* self = static_cast<Application*>(data);
                     if (!self->launchOnce()) self->browser_->handleReopen();
                   }),
                   this);
  g_signal_connect(
      application, "open",
      G_CALLBACK(+[](GApplication*, GFile** files, gint count, const char*, gpointer data) {
        for (gint i = 0; i < count; ++i)
          if (const GText uri(g_file_get_uri(files[i])); uri)
            static_cast<Application*>(data)->openAddress(uri.get());
      }),
      this);
  g_signal_connect(application, "query-end", G_CALLBACK(+[](GtkApplication*, gpointer data) {
                     static_cast<Application*>(data)->browser_->save();
                   }),
                   this);

  // Before the toolkit's own end, which may wait for a clipboard manager.
  g_signal_connect(application, "shutdown", G_CALLBACK(+[](GApplication* ending, gpointer data) {
                     giveNameBack(ending);
                     static_cast<Application*>(data)->browser_->willTerminate();
                   }),
                   this);

  // The program name alone, which activates: what the arguments mean has been settled above.
  char name[] = "orvel";
  char service[] = "--gapplication-service";
  char* argv[] = {name, options.isService ? service : nullptr, nullptr};
  const int status = g_application_run(application, options.isService ? 2 : 1, argv);
  g_signal_handlers_disconnect_by_data(application, this);
  return status;
}

void Application::makeActions() {
  const auto open =
      GRef<GSimpleAction>::adopt(g_simple_action_new(kOpenAddress, G_VARIANT_TYPE_STRING));
  g_signal_connect(
      open.get(), "activate", G_CALLBACK(+[](GSimpleAction*, GVariant* address, gpointer self) {
        static_cast<Application*>(self)->openAddress(g_variant_get_string(address, nullptr));
      }),
      this);
  const auto newTab = GRef<GSimpleAction>::adopt(g_simple_action_new(kNewTab, nullptr));
  g_signal_connect(newTab.get(), "activate",
                   G_CALLBACK(+[](GSimpleAction*, GVariant*, gpointer self) {
                     static_cast<Application*>(self)->newTab();
                   }),
                   this);
  for (auto* action : {open.get(), newTab.get()})
    g_action_map_add_action(G_ACTION_MAP(application_), G_ACTION(action));
}

bool Application::launchOnce() {
  if (std::exchange(hasLaunched_, true)) return false;
  browser_->didFinishLaunching();
  for (const std::string& address : startAddresses_) openAddress(address);
  if (wantsNewTab_) newTab();
  return true;
}

void Application::openAddress(const std::string& text) {
  if (!browser_) return;
  launchOnce();
  if (const auto address = externalAddress(text)) browser_->open({*address});
}

void Application::newTab() {
  if (!browser_) return;
  launchOnce();
  browser_->newTab();
}

}  // namespace orvel
