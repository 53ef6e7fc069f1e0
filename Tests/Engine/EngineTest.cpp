#include "Tests/Engine/EngineTest.h"

namespace orvel::test {

namespace {

struct Process {
  TemporaryFolder folder{"engine"};
  TestServer server;
  GLibScheduler scheduler;
  WebKitEngine* engine = nullptr;

  Process() {
    for (const char* variable : {"http_proxy", "https_proxy"})
      g_setenv(variable, server.proxy().c_str(), TRUE);
    g_setenv("no_proxy", "", TRUE);
    // Never destroyed, as the program's own is not before the process ends.
    engine = new WebKitEngine(scheduler, {.dataFolder = folder.path / "data",
                                          .cacheFolder = folder.path / "cache",
                                          .webProcessFolder = ORVEL_BUILD_DIR "/lib/web-process"});
  }
};

Process& process() {
  static Process instance;
  return instance;
}

}  // namespace

RealEngine::RealEngine()
    : server(process().server), scheduler(process().scheduler), engine(process().engine) {
  server.reset();
  store = engine->nonPersistentDataStore();
}

const std::filesystem::path& RealEngine::engineFolder() { return process().folder.path; }

RealEngine::~RealEngine() {
  for (GtkWidget* window : windows_) gtk_window_destroy(GTK_WINDOW(window));
}

std::shared_ptr<WebView> RealEngine::makeView(WebViewConfiguration configuration) {
  if (!configuration.websiteDataStore) configuration.websiteDataStore = store;
  return engine->makeWebView(configuration);
}

void RealEngine::show(WebView& view) {
  GtkWidget* window = gtk_window_new();
  gtk_window_set_default_size(GTK_WINDOW(window), 800, 600);
  gtk_window_set_child(GTK_WINDOW(window), view.widget());
  gtk_window_present(GTK_WINDOW(window));
  windows_.push_back(window);
  ASSERT_TRUE(eventually([&] { return view.isInWindow(); }));
}

void RealEngine::load(WebView& view, const std::string& url) {
  view.load({.url = *URL::parse(url)});
  ASSERT_TRUE(eventually([&] {
    return !view.isLoading() && view.url() && view.estimatedProgress() == 1.0;
  })) << url;
}

std::string RealEngine::evaluate(WebView& view, const std::string& script) {
  std::optional<ScriptResult> result;
  view.evaluateJavaScript(script, ContentWorld::page(), std::nullopt,
                          [&](ScriptResult value) { result = std::move(value); });
  eventually([&] { return result.has_value(); });
  return result ? result->value_or("") : "";
}

}  // namespace orvel::test
