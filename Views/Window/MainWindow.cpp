#include "Views/Window/MainWindow.h"

#include "DesignSystem/ShownText.h"
#include "Engine/WebView.h"
#include "Models/Commands/CommandList.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageFullscreen.h"
#include "Models/Windows/Toasts.h"
#include "Models/Windows/WindowChrome.h"
#include "Views/History/HistoryContent.h"
#include "Views/Page/PageMenuView.h"
#include "Views/Settings/SettingsContent.h"
#include "Views/Window/Accelerators.h"
#include "Views/Window/BrowserView.h"
#include "Views/Window/MainMenuView.h"
#include "Views/Window/UtilityWindows.h"

namespace orvel {

namespace {

constexpr int kWidth = 1280;
constexpr int kHeight = 820;
constexpr int kMinimumWidth = 640;
constexpr int kMinimumHeight = 420;
constexpr double kMenuInset = 8;

}  // namespace

MainWindow::MainWindow(GtkApplication* application, BrowserStore& store)
    : store_(store),
      window_(GTK_WINDOW(g_object_ref_sink(adw_application_window_new(application)))),
      desktopWindow_(window_),
      view_(std::make_unique<BrowserView>(store)),
      utilityWindows_(std::make_unique<UtilityWindows>(window_, store, view_->scheme())) {
  gtk_window_set_default_size(window_, kWidth, kHeight);
  gtk_widget_set_size_request(GTK_WIDGET(window_), kMinimumWidth, kMinimumHeight);
  g_signal_connect_swapped(window_, "close-request", G_CALLBACK(+[](MainWindow* self) -> gboolean {
                             self->close();
                             return TRUE;
                           }),
                           this);
  // F10 is the main menu's, not the menu bar's of the toolkit.
  gtk_window_set_handle_menubar_accel(window_, FALSE);
  gtk_widget_add_css_class(GTK_WIDGET(window_), "orvel");
  adw_application_window_set_content(ADW_APPLICATION_WINDOW(window_), view_->gobj());
  desktopWindow_.setButtons(view_->sidebar().topBar().windowButtons());
  installAccelerators(GTK_WIDGET(window_), store.commands,
                      [this](ActionID action) { return perform(action); });
  // The latest comes first: monitors see a key before it is an accelerator.
  events_ = std::make_unique<GtkEventSource>(desktopWindow_, store.services().desktop.events);
  utilityWindows_->fill(UtilityWindow::Settings,
                        [&store] { return std::make_unique<SettingsContent>(store); });
  utilityWindows_->fill(UtilityWindow::History,
                        [&store] { return std::make_unique<HistoryContent>(store); });
  store_.setInterface(this);
  store_.chrome.updateWindowChrome(WindowChrome::Motion::AtOnce);
  store_.chrome.updateWindowAppearance();
  title_ = effect([this] {
    const auto tab = store_.activeSpace()->selectedTab();
    const auto title = tab ? shownText(tab->displayTitle()) : std::string("Orvel");
    gtk_window_set_title(window_, title.c_str());
  });
}

MainWindow::~MainWindow() {
  g_signal_handlers_disconnect_by_data(window_, this);
  title_.stop();
  // What belongs to the screen goes with it: the next window begins without.
  store_.pageFullscreen.leave();
  store_.chrome.setSidebarPeeking(false);
  // A menu that is still open takes the keyboard along.
  gtk_window_set_focus(window_, nullptr);
  if (&store_.interface() == this) store_.setInterface(nullptr);
  utilityWindows_.reset();
  events_.reset();
  adw_application_window_set_content(ADW_APPLICATION_WINDOW(window_), nullptr);
  view_.reset();
  gtk_window_destroy(window_);
  g_object_unref(window_);
}

SettingsContent& MainWindow::settings() {
  return static_cast<SettingsContent&>(*utilityWindows_->content(UtilityWindow::Settings));
}

bool MainWindow::openUtilityWindow(UtilityWindow which) { return utilityWindows_->show(which); }

void MainWindow::close() {
  store_.services().scheduler.post([this, alive = std::weak_ptr(isAlive_)] {
    if (alive.expired() || !didClose) return;
    const auto tell = didClose;  // it goes with this object
    tell();
  });
}

void MainWindow::present() { gtk_window_present(window_); }

std::optional<bool> MainWindow::perform(ActionID action) {
  // A sheet keeps the keys for itself.
  if (store_.spaceEditing.spaceDraft.peek() && !worksUnderSheet(action)) return false;
  if (action == ActionID::MainMenu)
    toggleMainMenu();
  else if (action == ActionID::SwitchRegion)
    view_->switchRegion();
  else if (action == ActionID::Undo && offersUndo())
    store_.toasts.undoToast();
  else
    return std::nullopt;
  return true;
}

// A field has its own.
bool MainWindow::offersUndo() const {
  const auto& toast = store_.toasts.toast.peek();
  if (!toast || !toast->undo || desktopWindow_.isTextEditorFocused()) return false;
  const auto tab = store_.activeSpace()->selectedTab();
  const auto view = tab ? tab->liveWebView() : nullptr;
  auto* focus = gtk_window_get_focus(window_);
  const bool isInPage = view && view->widget() && focus &&
                        (focus == view->widget() || gtk_widget_is_ancestor(focus, view->widget()));
  return !isInPage || !view->isEditing();
}

void MainWindow::showPageMenu(const TabRef& tab, const PageHit& hit) {
  if (view_->page().tab() == tab) view_->page().showMenu(hit, pageMenuEntries(store_, tab, hit));
}

void MainWindow::toggleMainMenu() {
  auto& tools = view_->sidebar().tools();
  if (tools.get_mapped())
    tools.toggleMainMenu();
  else if (!dismissMenu(*view_))
    presentMenu(*view_, kMenuInset, kMenuInset, mainMenuEntries(store_.commands));
}

}  // namespace orvel
