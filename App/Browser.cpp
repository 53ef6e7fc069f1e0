#include "App/Browser.h"

#include <adwaita.h>
#include <sys/utsname.h>

#include "App/WindowController.h"
#include "BrowserCore/Addresses/Endpoints.h"
#include "DesignSystem/StyleSheet.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/SessionFile.h"

namespace orvel {

namespace {

std::filesystem::path configFile() {
  return std::filesystem::path(g_get_user_config_dir()) / "Orvel" / "defaults.ini";
}

std::filesystem::path downloadsFolder() {
  if (const char* folder = g_get_user_special_dir(G_USER_DIRECTORY_DOWNLOAD)) return folder;
  return std::filesystem::path(g_get_home_dir()) / "Downloads";
}

std::string systemVersion() {
  if (const GText name(g_get_os_info(G_OS_INFO_KEY_PRETTY_NAME)); name) return name.get();
  utsname system{};
  return uname(&system) == 0 ? system.sysname : "Linux";
}

}  // namespace

Browser::Browser(GtkApplication* application, const std::filesystem::path& folder)
    : application_(application),
      paths_(AppPaths::in(g_get_user_data_dir(), g_get_user_cache_dir(), downloadsFolder())),
      share_(folder / "../share/orvel"),
      files_(scheduler_, FileSystem::disk()),
      defaults_(files_, configFile()),
      engine_(*new WebKitEngine(scheduler_, {.dataFolder = paths_.support / "WebKit",
                                             .cacheFolder = paths_.caches,
                                             .webProcessFolder = folder / "../lib/web-process"})),
      desktop_(scheduler_, G_APPLICATION(application)),
      favicons_(scheduler_, files_.files(), &HTTPSession::ephemeral, paths_.favicons()),
      filterLists_(scheduler_, files_, defaults_, &HTTPSession::ephemeral,
                   {FileSystem::disk(), paths_.support / "Filters", share_ / "Filters"}),
      currencies_(scheduler_, files_, &HTTPSession::ephemeral, paths_.currencyRates(),
                  *URL::parse(endpoints::kCurrencyRates)),
      engineSuggestions_(&HTTPSession::ephemeral),
      services_{.scheduler = scheduler_,
                .engine = engine_,
                .desktop = desktop_.desktop(),
                .files = files_,
                .paths = paths_,
                .favicons = favicons_,
                .defaults = defaults_,
                .filterLists = filterLists_,
                .currencies = currencies_,
                .engineSuggestions = engineSuggestions_,
                .resources = share_,
                .downloads = std::make_shared<DownloadManager>(
                    files_.files(), services_.desktop.workspace, paths_.downloads),
                .openHistory = [this](const auto& file) {
                  return HistoryStore::open(scheduler_, file);
                }} {
  // The store first: it has the selected page's process started, beside which all else happens.
  store_ = BrowserStore::make(services_);
  adw_init();
  StyleSheet::load(share_);
  ApplicationLifecycle::Steps steps;
  steps.appVersion = ORVEL_VERSION;
  steps.systemVersion = systemVersion();
  steps.makeWindowController = [this] {
    return std::make_unique<WindowController>(application_, *store_, desktop_, defaults_);
  };
  lifecycle_ = std::make_unique<ApplicationLifecycle>(store_, std::move(steps));
}

Browser::~Browser() = default;

void Browser::handleReopen() {
  using enum ApplicationLifecycle::VisibleWindows;
  const DesktopWindow* window = store_->window();
  lifecycle_->handleReopen(window && window->isVisible() ? Some : None);
}

void Browser::save() { store_->session.save(); }

void Browser::newTab() {
  lifecycle_->showWindow();
  store_->showCommandBar(CommandBarMode::NewTab);
}

}  // namespace orvel
