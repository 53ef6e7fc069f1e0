#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Base/Image.h"
#include "Base/Published.h"
#include "Base/Task.h"
#include "BrowserCore/Session/TabRecord.h"
#include "Engine/Delegates.h"
#include "Models/Spaces/Profile.h"
#include "Models/Store/Services.h"
#include "Models/Tab/CrashRule.h"
#include "Models/Tab/OtherApplications.h"
#include "Models/Tab/PagePanels.h"
#include "Models/Tab/PagePermissions.h"
#include "Models/Tab/PageQuestions.h"
#include "Models/Tab/PageState.h"
#include "Models/Tab/PageVisit.h"
#include "Models/Tab/TabHost.h"
#include "Models/Tab/TabIcon.h"

namespace orvel {

// One tab: the few lasting facts of a page and, only while it is needed, a live web view. The view
// is made on first demand, can be thrown away at any time and is made again from the page's saved
// state or its address.
//
// Held by std::shared_ptr alone; make it with `make`.
class BrowserTab final : public NavigationDelegate,
                         public WebExtensionTab,
                         public std::enable_shared_from_this<BrowserTab> {
 public:
  struct Values {
    UUID id = UUID::random();
    std::shared_ptr<Profile> profile;
    std::weak_ptr<TabHost> host;
    std::optional<URL> url;
    std::string title;
    std::optional<URL> pinnedURL;
    std::optional<Date> lastActiveAt;
    // For a window that a page opened: the engine navigates the view itself.
    std::optional<WebViewConfiguration> configuration;
    // Who chose the scheme of `url`.
    SchemeSource schemeSource = SchemeSource::Given;
    PageState::FormerFile stateFile = PageState::FormerFile::None;
  };
  [[nodiscard]] static TabRef make(const Services& services, Values values);
  ~BrowserTab() override;

  const UUID id;
  const std::shared_ptr<Profile> profile;
  Observable<std::string> title;                  // the last one that wasn't empty
  Published<std::optional<URL>, BrowserTab> url;  // the address that the tab shows or will show
  Observable<std::optional<URL>> pinnedURL;       // a pinned tab's home; absent for ordinary ones
  Published<bool, BrowserTab> isLoading = false;
  Published<double, BrowserTab> progress = 0.0;  // 0 to 1
  // Closed for good: no web view is made for it again.
  Observable<bool> isDiscarded = false;
  Published<bool, BrowserTab> canGoBack = false;
  Published<bool, BrowserTab> canGoForward = false;
  Published<ImageRef, BrowserTab> thumbnail;
  Observable<bool> isPlayingMedia = false;
  Observable<bool> isMuted = false;
  Published<double, BrowserTab> pageZoom = 1.0;  // 1 is actual size
  // The view has yet to draw its first page.
  Published<bool, BrowserTab> isBlank = false;
  // What the page asks, and what is asked about it.
  PageQuestions questions;
  PagePanels panels;
  // What the page may use of the machine.
  PagePermissions permissions;
  // Grows when the view is replaced in place, so that the interface drops its host of the old one.
  Published<int, BrowserTab> webViewRevision = 0;
  std::optional<Date> lastActiveAt;  // when it was last selected
  bool isInAutoPictureInPicture = false;

  // The icon of the present site; null without one. Read from the icon cache when first asked for.
  ImageRef favicon() const { return icon_.favicon(url.peek()); }
  void setFavicon(ImageRef icon) { icon_.setFavicon(std::move(icon)); }

  // The live view, which is made first if there is none: the only way in which one comes into
  // being. Reading it subscribes nobody. Null for a discarded tab without one.
  std::shared_ptr<WebView> webView();
  // The live view; null while there is none. Subscribes to its coming and going.
  std::shared_ptr<WebView> liveWebView() const { return webView_.get(); }

  // The surroundings, or those of a tab that has none any more; never null.
  std::shared_ptr<TabHost> host() const;

  // The title, or the site's short name, or "New Tab".
  std::string displayTitle() const;
  // The page differs from the pin by more than a slash at the end or a fragment.
  bool hasWanderedFromPin() const;
  TabRecord record() const;

  // What restores the history and the position on the page. Without one that leads to its address,
  // the page is loaded afresh.
  PageState pageState;
  // The live view's, or else the saved one.
  std::optional<InteractionState> currentState() const;
  // Ends the view and keeps the way back to its page.
  void hibernate();

  void load(const URL& address, SchemeSource scheme = SchemeSource::Given);
  void reload(ReloadSource source = ReloadSource::Cache);
  // Ends the page of a pinned tab, which returns to its home.
  void unload();
  // Ends the view and what belongs to it. Safe without one.
  void teardown();
  // Makes the page again in the configuration of the extension that owns its address, if it was
  // restored before that extension was loaded.
  void reopenExtensionPage();
  // Does nothing for a page that is not on screen.
  void captureThumbnail();
  // Null without a view on screen. Absent `rect`: the whole view.
  Task<ImageRef> screenshot(std::optional<PageRect> rect);
  // Whether the text was found, ignoring case and wrapping around.
  enum class FindDirection { Forwards, Backwards };
  Task<bool> find(std::string text, FindDirection direction);
  // Takes the marks of `find` off the page.
  void endFind();
  void printPage();
  // Asks for a file and writes the whole page to it. Does nothing for a page that is not on screen.
  void exportPDF();
  // The same in one file that a browser shows.
  void savePage();
  // Opens the developer tools, or closes them.
  void toggleInspector();
  // Sets it on the live view and, but for a private tab, for the site. 1 is actual size.
  void setZoom(double zoom);
  // By a step, within the least and the greatest zoom. Nothing without a live view.
  enum class ZoomStep { In, Out };
  void zoom(ZoomStep step);
  void goBack();
  void goForward();
  void stopLoading();

  // Media.
  void toggleMute();
  Task<> refreshMediaState();
  void mediaDidChange(const FrameInfo& frame);
  void enterPictureInPicture();
  void leavePictureInPicture();

  // What a view of this profile is made from.
  [[nodiscard]] static WebViewConfiguration makeConfiguration(Profile& profile);

  // NavigationDelegate
  void decidePolicyForAction(WebView& view, const NavigationAction& action,
                             PolicyHandler answer) override;
  void decidePolicyForResponse(WebView& view, const NavigationResponse& response,
                               PolicyHandler answer) override;
  void didBecomeDownload(WebView& view, std::shared_ptr<Download> download) override;
  void didCommit(WebView& view) override;
  void didFinish(WebView& view) override;
  void didFailProvisionalNavigation(WebView& view, const LoadError& error) override;
  void didFail(WebView& view, const LoadError& error) override;
  void webContentProcessDidTerminate(WebView& view) override;
  void didReceiveAuthenticationChallenge(
      WebView& view, const AuthenticationChallenge& challenge,
      std::function<void(std::optional<Credential>)> answer) override;

 private:
  BrowserTab(const Services& services, Values values);

  void makeWebView();
  WebViewConfiguration prepareConfiguration();
  void restorePage(const std::shared_ptr<WebView>& view);
  void observe(WebView& view);
  void reopen(const URL& address);
  URLRequest requestFor(const URL& address) const;
  // What takes the place of a navigation of the main frame; empty: it goes on.
  std::function<void()> insteadOf(WebView& view, const NavigationAction& action);
  bool opensInPeek(const WebView& view, const NavigationAction& action) const;
  void sync(const WebView& view);
  // The page is another one, or at another address: the session and the page's state are saved.
  void pageDidChange();
  // The page in one form of a file; the sentence says that it could not be had.
  struct FileForm {
    void (WebView::*create)(std::function<void(PageFile)>);
    const char* suffix;
    const char* failure;
  };
  void saveTo(const FileForm& form);
  void write(const FileForm& form, const std::filesystem::path& file);
  // Swaps the icon when the host changes.
  void setAddress(const std::optional<URL>& address);
  void applyMute();
  void itemWasHidden(const ScriptMessage& message);
  void applyHiddenItems(WebView& view);
  static void showErrorPage(WebView& view, const LoadError& error,
                            const std::optional<URL>& address);
  std::string logLabel(const std::optional<URL>& address) const;

  const Services& services_;
  const std::weak_ptr<TabHost> host_;
  Observable<std::shared_ptr<WebView>> webView_;
  // The tab's own; null for an extension's page.
  std::shared_ptr<UserContentController> contentController_;
  std::optional<WebViewConfiguration> pendingConfiguration_;
  std::vector<Observation> observations_;
  // The base address of the extension that the view was made for.
  std::optional<URL> extensionBaseURL_;
  // The address whose scheme the program supplied, until a page commits.
  std::optional<URL> suppliedAddress_;
  // The last address that was loaded in place of one with tracking parameters, until a page
  // finishes.
  std::optional<URL> lastStrippedURL_;
  // The view has committed a page.
  bool hasPage_ = false;
  std::vector<FrameInfo> mediaFrames_;
  TabIcon icon_;
  PageVisit visit_{*this};
  CrashRule crashes_;
  OtherApplications applications_;
};

}  // namespace orvel
