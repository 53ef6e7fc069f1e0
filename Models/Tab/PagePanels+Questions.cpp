#include "Base/Texts.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "Models/Tab/BrowserTab.h"
#include "Models/Tab/PagePanels.h"
#include "Support/Network/ErrorPage.h"

// Pages that are to be closed, and pages that do not answer.
namespace orvel {

namespace {

// How long a page that the user waits for is left alone.
constexpr Duration kPatience = 20s;
constexpr size_t kStopButton = 1;

}  // namespace

void PagePanels::requestClose(std::function<void(CloseAnswer)> answer) {
  const auto view = tab_.liveWebView();
  if (!view) return answer(CloseAnswer::Unguarded);
  closing_ = Closing();
  dialogs_.leave();
  view->requestClose(
      [this, weak = tab_.weak_from_this(), answer = std::move(answer)](bool mayClose) {
        const auto tab = weak.lock();
        const bool hasAskedUser = tab && closing_ && closing_->hasAskedUser;
        if (tab) {
          closing_.reset();
          dialogs_.stay();
        }
        if (!mayClose) return answer(CloseAnswer::Stay);
        answer(hasAskedUser ? CloseAnswer::Leave : CloseAnswer::Unguarded);
      });
}

void PagePanels::followResponsiveness(const WebView& view) {
  isUnresponsive = !view.isResponsive();
  if (isUnresponsive.peek()) return askAboutUnresponsivePage();
  askAgain_.cancel();
  if (unresponsiveQuestion_) tab_.questions.withdraw(*unresponsiveQuestion_);
}

void PagePanels::askAboutUnresponsivePage() {
  if (unresponsiveQuestion_) return;
  const auto& address = tab_.url.peek();
  unresponsiveQuestion_ = tab_.questions.ask(
      {.voice = PageQuestion::Voice::Program,
       .symbols = {"hourglass"},
       .alert = {.messageText =
                     filled(_("{site} isn’t answering"),
                            {{"site", address ? displayHost(*address) : _("This page")}}),
                 .informativeText =
                     _("You can wait for the page or stop it.\nOther tabs go on as they are."),
                 .buttons = {_("Wait"), _("Stop")}},
       .escape = 0},
      [this, weak = tab_.weak_from_this()](const AlertAnswer& given) {
        const auto tab = weak.lock();
        if (!tab) return;
        unresponsiveQuestion_.reset();
        if (given.button == kStopButton) return stopUnresponsivePage();
        dialogs_.goOn();
        if (given.button) askAgain_ = services_.scheduler.start(askAgain(weak, *this));
      });
}

Task<> PagePanels::askAgain(std::weak_ptr<BrowserTab> weak, PagePanels& panels) {
  const SleepResult slept = co_await sleep(kPatience);
  const auto tab = weak.lock();
  if (slept == SleepResult::Done && tab && panels.isUnresponsive.peek())
    panels.askAboutUnresponsivePage();
}

void PagePanels::stopUnresponsivePage() {
  const auto view = tab_.liveWebView();
  if (!view) return;
  view->endProcess();
  dialogs_.pageDidChange();
  const auto& address = tab_.url.peek();
  view->loadHTMLString(
      ErrorPage::html({.domain = "Orvel",
                       .code = 2,
                       .localizedDescription = _("This page wasn’t answering and was stopped.")},
                      address),
      address);
}

void PagePanels::teardown() {
  pageDidChange();
  askAgain_.cancel();
  isUnresponsive = false;
}

}  // namespace orvel
