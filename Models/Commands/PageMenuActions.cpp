#include "BrowserCore/Addresses/TrackingParameters.h"
#include "Models/Commands/PageMenu.h"
#include "Models/Downloads/Downloads.h"
#include "Models/Downloads/PictureCopy.h"
#include "Models/Settings/Settings.h"
#include "Models/Sidebar/CopiedLink.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Tab/PageSource.h"
#include "Models/Windows/LittleWindows.h"

namespace orvel {

namespace {

// One row of one menu, being performed.
class Action {
 public:
  Action(BrowserStore& store, TabRef tab, std::shared_ptr<WebView> view, const PageHit& hit)
      : store_(store), tab_(std::move(tab)), view_(std::move(view)), hit_(hit) {}

  void perform(PageMenuCommand command) {
    if (hit_.link) performOnLink(*hit_.link, command);
    if (hit_.picture) performOnPicture(*hit_.picture, command);
    performOnMedia(command);
    performOnText(command);
    performOnPage(command);
  }

 private:
  using enum PageMenuCommand;

  void performOnLink(const URL& link, PageMenuCommand command) {
    if (command == OpenLink) openBehind(link);
    if (command == OpenLinkInSplitView) store_.coming.splitWithRecentTab();
    if (command == OpenLinkInLittleWindow) openLittleWindow(link);
    if (command == OpenLinkInPrivateWindow) store_.coming.openPrivateWindow();
    if (command == DownloadLink) store_.downloads.saveAs(tab_, link);
    if (command == CopyLink) copy(link.text());
    if (command == CopyCleanLink) copy(cleaned(link).text());
    if (command == CopyMarkdownLink)
      copy(markdownLink(hit_.linkText.empty() ? link.text() : hit_.linkText, cleaned(link)));
  }

  void performOnPicture(const URL& picture, PageMenuCommand command) {
    if (command == OpenPicture) openBehind(picture);
    if (command == SavePicture) store_.downloads.saveAs(tab_, picture);
    if (command == CopyPicture) PictureCopy::start(store_, *tab_, picture);
    if (command == CopyPictureLink) copy(picture.text());
  }

  void performOnMedia(PageMenuCommand command) {
    if (command == TogglePlaying) view_->controlMedia(MediaCommand::TogglePlaying);
    if (command == ToggleMuted) view_->controlMedia(MediaCommand::ToggleMuted);
    if (command == ToggleLooping) view_->controlMedia(MediaCommand::ToggleLooping);
    if (command == ToggleControls) view_->controlMedia(MediaCommand::ToggleControls);
    if (command == CopyMediaLink && hit_.mediaAddress) copy(hit_.mediaAddress->text());
  }

  void performOnText(PageMenuCommand command) {
    if (command == Undo) view_->edit(EditingCommand::Undo);
    if (command == Redo) view_->edit(EditingCommand::Redo);
    if (command == Cut) view_->edit(EditingCommand::Cut);
    if (command == Copy) view_->edit(EditingCommand::Copy);
    if (command == Paste) view_->edit(EditingCommand::Paste);
    if (command == PasteAsPlainText) view_->edit(EditingCommand::PasteAsPlainText);
    if (command == SelectAll) view_->edit(EditingCommand::SelectAll);
    if (command == Search) search();
    if (command == SearchInSplitView) store_.coming.splitWithRecentTab();
  }

  void performOnPage(PageMenuCommand command) {
    if (command == Back) tab_->goBack();
    if (command == Forward) tab_->goForward();
    if (command == Reload) tab_->reload();
    if (command == SavePage) tab_->savePage();
    if (command == Print) tab_->printPage();
    if (command == Capture) store_.coming.beginCapture(tab_);
    if (command == ViewSource) openSource(store_, tab_);
    if (command == Inspect) view_->openInspector();
  }

  static URL cleaned(const URL& link) { return TrackingParameters::stripped(link).value_or(link); }
  void copy(const std::string& text) const { store_.services().desktop.clipboard.setText(text); }
  void openBehind(const URL& address) {
    tab_->host()->openLink(cleaned(address), *tab_, TabHost::Selection::StaysBehind);
  }
  void openLittleWindow(const URL& link) {
    if (store_.interface().hasLittleWindows())
      store_.littleWindows.openLittleWindow(cleaned(link), tab_->profile);
    else
      store_.littleWindows.newLittleWindow();
  }
  void search() {
    if (const auto results = store_.settings.searchEngine.peek().searchURL(hit_.selection))
      store_.openTab(*results, {.after = tab_});
  }

  BrowserStore& store_;
  const TabRef tab_;
  const std::shared_ptr<WebView> view_;
  const PageHit& hit_;
};

}  // namespace

PageMenuState pageMenuState(const BrowserStore& store, const BrowserTab& tab) {
  return {.page = tab.url.peek(),
          .canGoBack = tab.canGoBack.peek(),
          .canGoForward = tab.canGoForward.peek(),
          .searchEngine = std::string(store.settings.searchEngine.peek().name())};
}

void performPageMenu(BrowserStore& store, const TabRef& tab, const PageHit& hit,
                     PageMenuCommand command) {
  if (const auto view = tab->liveWebView()) Action(store, tab, view, hit).perform(command);
}

}  // namespace orvel
