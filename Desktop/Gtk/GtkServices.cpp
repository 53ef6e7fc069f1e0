#include "Desktop/Gtk/GtkServices.h"

#include <fcntl.h>
#include <gio/gdesktopappinfo.h>
#include <glib-unix.h>
#include <unistd.h>

#include "Base/GRef.h"
#include "Base/GioCall.h"
#include "Desktop/Gtk/Textures.h"

namespace orvel {

namespace {

constexpr const char* kDesktopFile = "com.brinemark.orvel.desktop";

GdkClipboard* clipboard() { return gdk_display_get_clipboard(gdk_display_get_default()); }

// Carries the activation token, so that the other application may come to the front.
GRef<GAppLaunchContext> launchContext() {
  return GRef<GAppLaunchContext>::adopt(
      G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(gdk_display_get_default())));
}

GText uriOf(const std::filesystem::path& file) {
  return GText(g_filename_to_uri(file.c_str(), nullptr, nullptr));
}

}  // namespace

// Clipboard

void GtkClipboard::setText(const std::string& text) {
  gdk_clipboard_set_text(clipboard(), text.c_str());
}

void GtkClipboard::setImage(const ImageRef& image) {
  if (const auto texture = textureOf(image)) gdk_clipboard_set_texture(clipboard(), texture.get());
}

void GtkClipboard::getText(std::function<void(std::optional<std::string>)> answer) {
  gioCall(gdk_clipboard_read_text_async, clipboard(), nullptr)
      .then(gdk_clipboard_read_text_finish,
            [answer = std::move(answer)](char* rawText, const GErrorRef&) {
              const GText text(rawText);
              answer(text ? std::optional<std::string>(text.get()) : std::nullopt);
            });
}

// Workspace

std::optional<ApplicationInfo> GtkWorkspace::applicationToOpen(const URL& url) const {
  const auto info = GRef<GAppInfo>::adopt(
      g_app_info_get_default_for_uri_scheme(std::string(url.scheme()).c_str()));
  if (!info || g_strcmp0(g_app_info_get_id(info.get()), kDesktopFile) == 0) return std::nullopt;
  const char* id = g_app_info_get_id(info.get());
  return ApplicationInfo{id ? id : "", g_app_info_get_display_name(info.get())};
}

void GtkWorkspace::open(const URL& url) {
  if (!applicationToOpen(url)) return;
  g_app_info_launch_default_for_uri_async(url.text().c_str(), launchContext().get(), nullptr,
                                          nullptr, nullptr);
}

void GtkWorkspace::openFile(const std::filesystem::path& file, std::function<void(bool)> answer) {
  const GText uri = uriOf(file);
  gioCall(g_app_info_launch_default_for_uri_async, uri ? uri.get() : "", launchContext().get(),
          nullptr)
      .then(g_app_info_launch_default_for_uri_finish,
            [answer = std::move(answer)](bool isOpened, const GErrorRef&) { answer(isOpened); });
}

void GtkWorkspace::reveal(const std::filesystem::path& file) {
  const GText uri = uriOf(file);
  if (!uri) return;
  gioCall(g_bus_get, G_BUS_TYPE_SESSION, nullptr)
      .then(g_bus_get_finish,
            [address = std::string(uri.get())](GDBusConnection* found, const GErrorRef&) {
              const auto bus = GRef<GDBusConnection>::adopt(found);
              if (!bus) return;
              const char* uris[] = {address.c_str(), nullptr};
              g_dbus_connection_call(
                  bus.get(), "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                  "org.freedesktop.FileManager1", "ShowItems", g_variant_new("(^ass)", uris, ""),
                  nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
            });
}

bool GtkWorkspace::isDefaultBrowser() const {
  const auto info = GRef<GAppInfo>::adopt(g_app_info_get_default_for_uri_scheme("https"));
  return info && g_strcmp0(g_app_info_get_id(info.get()), kDesktopFile) == 0;
}

void GtkWorkspace::makeDefaultBrowser(std::function<void(bool)> answer) {
  const auto own = GRef<GDesktopAppInfo>::adopt(g_desktop_app_info_new(kDesktopFile));
  // A program that is not installed cannot be anybody's default.
  if (own)
    for (const char* type : {"x-scheme-handler/http", "x-scheme-handler/https", "text/html"})
      g_app_info_set_as_default_for_type(G_APP_INFO(own.get()), type, nullptr);
  scheduler_.post(
      [answer = std::move(answer), isDefault = isDefaultBrowser()] { answer(isDefault); });
}

void GtkWorkspace::noteDownloadFinished(const std::filesystem::path& file) {
  if (const GText uri = uriOf(file))
    gtk_recent_manager_add_item(gtk_recent_manager_get_default(), uri.get());
}

// Memory

namespace {

// Tasks waited for memory for a tenth of two seconds.
constexpr std::string_view kStall = "some 200000 2000000";

// The desktop's monitor needs a service that many machines do not run: the kernel is asked besides.
class MemoryWatch {
 public:
  explicit MemoryWatch(std::function<void()> event)
      : event_(std::move(event)),
        monitor_(GRef<GMemoryMonitor>::adopt(g_memory_monitor_dup_default())),
        stalls_(open("/proc/pressure/memory", O_RDWR | O_NONBLOCK | O_CLOEXEC)) {
    if (monitor_)
      connection_ =
          g_signal_connect_swapped(monitor_.get(), "low-memory-warning",
                                   G_CALLBACK(+[](MemoryWatch* self) { self->event_(); }), this);
    // The text ends with its zero byte; a kernel that offers no such trigger refuses it.
    if (stalls_ >= 0 && write(stalls_, kStall.data(), kStall.size() + 1) > 0)
      source_ = g_unix_fd_add(stalls_, G_IO_PRI, &MemoryWatch::stalled, this);
  }
  ~MemoryWatch() {
    if (connection_) g_signal_handler_disconnect(monitor_.get(), connection_);
    if (source_) g_source_remove(source_);
    if (stalls_ >= 0) close(stalls_);
  }
  MemoryWatch(const MemoryWatch&) = delete;

 private:
  static gboolean stalled(gint, GIOCondition, gpointer self) {
    static_cast<MemoryWatch*>(self)->event_();
    return G_SOURCE_CONTINUE;
  }

  const std::function<void()> event_;
  const GRef<GMemoryMonitor> monitor_;
  gulong connection_ = 0;
  const int stalls_;
  guint source_ = 0;
};

}  // namespace

Observation GtkMemoryPressure::observe(std::function<void()> event) {
  auto watch = std::make_shared<MemoryWatch>(std::move(event));
  return Observation([watch]() mutable { watch.reset(); });
}

// What this desktop does not have

void NoHotKeys::registerSpace(ModifierKeys, std::function<void()>,
                              std::function<void(std::unique_ptr<HotKey>)> answer) {
  scheduler_.post([answer = std::move(answer)] { answer(nullptr); });
}

void NoSystemSearch::deleteDomain(const std::string&, std::function<void()> answer) {
  scheduler_.post(std::move(answer));
}

void NoSystemSearch::deleteItems(std::vector<std::string>, std::function<void()> answer) {
  scheduler_.post(std::move(answer));
}

void NoSystemSearch::index(std::vector<SearchableItem>, std::function<void()> answer) {
  scheduler_.post(std::move(answer));
}

}  // namespace orvel
