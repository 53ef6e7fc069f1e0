#include <fmt/format.h>
#include <gdk/x11/gdkx.h>
#include <webkit/webkit.h>

#include <nlohmann/json.hpp>

#include "Desktop/Gtk/GtkDesktop.h"
#include "Desktop/Gtk/GtkEventSource.h"
#include "Tests/Contract/Contract.h"
#include "Tests/Engine/EngineTest.h"

namespace orvel::test {

namespace {

class RealEngineStage final : public EngineStage, RealEngine {
 public:
  Engine& engine() override { return *RealEngine::engine; }
  void put(const std::string& url, const Site& site) override {
    if (site.kind == Site::Kind::Refused)
      return server.refuse(std::string(URL::parse(url)->host().value_or("")), 80);
    ServedPage page{.body = "<title>" + site.title + "</title><body>"};
    if (site.storesData) page.headers["Set-Cookie"] = "k=v; Max-Age=99999";
    if (site.kind == Site::Kind::Silent) page.delay = 60;
    if (site.kind == Site::Kind::Torn) {
      page.body += std::string(100'000, 'x');
      page.truncate = 60'000;
    }
    if (site.kind == Site::Kind::File)
      page = {.body = "bytes", .headers = {{"Content-Type", "application/octet-stream"}}};
    server.serve(url, page);
  }
  bool until(const std::function<bool()>& condition) override { return eventually(condition, 15s); }
  void pass() override { turnFor(150ms); }
  void show(WebView& view) override { RealEngine::show(view); }
  void askForMenu(WebView& view, const std::string& markup, const PageHit&) override {
    evaluate(view, fmt::format(
                       R"js(document.body.innerHTML = {};
                       document.head.append(Object.assign(document.createElement('style'),
                           {{textContent: 'body > *, img {{ position: fixed; inset: 0; width: 100vw; height: 100vh }}'}}));
                       document.querySelector('[autofocus]')?.focus();
                       const chosen = document.getElementById('chosen');
                       if (chosen) getSelection().selectAllChildren(chosen); 1)js",
                       nlohmann::json(markup).dump()));
    ASSERT_TRUE(eventually([&] { return !view.isBlank(); }));
    auto* native = gtk_widget_get_native(view.widget());
    const auto id = gdk_x11_surface_get_xid(gtk_native_get_surface(native));
    const std::string command = fmt::format("xdotool mousemove --window {} 60 60 click 3", id);
    ASSERT_TRUE(g_spawn_command_line_async(command.c_str(), nullptr));
  }
  void hang(WebView& view) override {
    evaluate(view, "setTimeout(() => { for (;;); }); 1");
    turnFor(100ms);
  }
  void crash(WebView& view) override {
    webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(view.widget()));
  }
  void play(WebView& view) override {
    // What was never on screen plays nothing.
    if (!view.isInWindow()) RealEngine::show(view);
    evaluate(view, kSound);
  }
  std::filesystem::path folder() const override { return RealEngine::folder.path; }
};

class RealDesktopStage final : public DesktopStage {
 public:
  RealDesktopStage() {
    gtk_window_set_default_size(native(), 400, 300);
    gtk_window_set_hide_on_close(native(), TRUE);
    gtk_window_set_child(native(), content_);
    auto* watcher = gtk_event_controller_legacy_new();
    gtk_widget_set_focusable(content_, TRUE);
    g_signal_connect_swapped(
        watcher, "event", G_CALLBACK(+[](int* count, GdkEvent* event) -> gboolean {
          const auto type = gdk_event_get_event_type(event);
          const bool isKey = type == GDK_KEY_PRESS && !gdk_key_event_is_modifier(event);
          if (isKey || type == GDK_BUTTON_PRESS) ++*count;
          return type == GDK_KEY_PRESS;
        }),
        &eventsOfContent_);
    gtk_widget_add_controller(content_, watcher);
    desktop_.addWindow(&window_);
    source_ = std::make_unique<GtkEventSource>(window_, desktop_.desktop().events);
    gtk_window_present(native());
    gtk_widget_grab_focus(content_);
    // Without a window manager nobody else gives the keyboard.
    eventually([&] { return gtk_widget_get_mapped(content_) != FALSE; });
    run({"xdotool", "windowfocus", "--sync", std::to_string(xid())});
    eventually([&] { return window_.isActive(); });
  }
  ~RealDesktopStage() override {
    source_.reset();
    desktop_.removeWindow(&window_);
    gtk_window_destroy(native());
  }

  Desktop desktop() override { return desktop_.desktop(); }
  DesktopWindow& window() override { return window_; }
  bool until(const std::function<bool()>& condition) override { return eventually(condition); }
  void pass() override { turnFor(150ms); }
  void chooseFile(const std::optional<std::filesystem::path>& file) override {
    eventually([] { return dialog(GTK_TYPE_FILE_CHOOSER_DIALOG) != nullptr; });
    auto* chooser = GTK_FILE_CHOOSER(dialog(GTK_TYPE_FILE_CHOOSER_DIALOG));
    const auto path = GRef<GFile>::adopt(g_file_new_for_path(file.value_or("/nowhere").c_str()));
    if (file) gtk_file_chooser_set_file(chooser, path.get(), nullptr);
    const auto isChosen = [&] {
      const auto chosen = GRef<GFile>::adopt(gtk_file_chooser_get_file(chooser));
      return chosen && g_file_equal(chosen.get(), path.get());
    };
    if (file) eventually(isChosen);
    gtk_dialog_response(GTK_DIALOG(chooser), file ? GTK_RESPONSE_ACCEPT : GTK_RESPONSE_CANCEL);
  }
  void focusField() override {
    gtk_window_set_child(native(), gtk_entry_new());
    gtk_widget_grab_focus(gtk_window_get_child(native()));
  }
  void runShortOfMemory() override {
    const auto monitor = GRef<GMemoryMonitor>::adopt(g_memory_monitor_dup_default());
    g_signal_emit_by_name(monitor.get(), "low-memory-warning", G_MEMORY_MONITOR_WARNING_LEVEL_LOW);
  }
  void choose(size_t button) override {
    adw_message_dialog_response(ADW_MESSAGE_DIALOG(dialog(ADW_TYPE_MESSAGE_DIALOG)),
                                std::to_string(button).c_str());
  }
  void dismiss() override { gtk_window_destroy(dialog(ADW_TYPE_MESSAGE_DIALOG)); }
  void press(const std::string& keys) override { run({"xdotool", "key", keys}); }
  void click(double x, double y) override {
    run({"xdotool", "mousemove", "--window", std::to_string(xid()), std::to_string(int(x)),
         std::to_string(int(y)), "click", "1"});
  }
  int eventsOfContent() const override { return eventsOfContent_; }

 private:
  GtkWindow* native() const { return window_.native(); }
  unsigned long xid() const {
    return gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(native())));
  }
  // The program's latest window of this type; null without one.
  static GtkWindow* dialog(GType type) {
    GtkWindow* found = nullptr;
    GList* windows = gtk_window_list_toplevels();
    for (GList* one = windows; one && !found; one = one->next)
      if (G_TYPE_CHECK_INSTANCE_TYPE(one->data, type)) found = GTK_WINDOW(one->data);
    g_list_free(windows);
    return found;
  }
  static void run(const std::vector<std::string>& command) {
    std::vector<const char*> words;
    for (const auto& word : command) words.push_back(word.c_str());
    words.push_back(nullptr);
    const auto process =
        GRef<GSubprocess>::adopt(g_subprocess_newv(words.data(), G_SUBPROCESS_FLAGS_NONE, nullptr));
    bool isDone = false;
    g_subprocess_wait_async(
        process.get(), nullptr,
        [](GObject*, GAsyncResult*, gpointer done) { *static_cast<bool*>(done) = true; }, &isDone);
    eventually([&] { return isDone; });
  }

  GLibScheduler scheduler_;
  GtkDesktop desktop_{scheduler_, nullptr};
  GtkDesktopWindow window_{GTK_WINDOW(gtk_window_new())};
  GtkWidget* content_ = gtk_drawing_area_new();
  std::unique_ptr<GtkEventSource> source_;
  int eventsOfContent_ = 0;
};

}  // namespace

std::unique_ptr<EngineStage> makeRealEngineStage() { return std::make_unique<RealEngineStage>(); }
std::unique_ptr<DesktopStage> makeRealDesktopStage() {
  return std::make_unique<RealDesktopStage>();
}

}  // namespace orvel::test
