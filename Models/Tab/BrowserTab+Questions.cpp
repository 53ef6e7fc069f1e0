#include "Base/Texts.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "Models/Tab/BrowserTab.h"

// Pages that are to be closed, and pages that do not answer.
namespace orvel {

namespace {

// How long a page that the user waits for is left alone.
constexpr Duration kPatience = 20s;
constexpr size_t kStopButton = 1;

}  // namespace

void BrowserTab::requestClose(std::function<void(CloseAnswer)> answer) {
  const auto view = webView_.peek();
  if (!view) return answer(CloseAnswer::Unguarded);
  closing_ = Closing();
  scriptDialogs_.leave();
  view->requestClose([weak = weak_from_this(), answer = std::move(answer)](bool mayClose) {
    const auto tab = weak.lock();
    const bool hasAskedUser = tab && tab->closing_ && tab->closing_->hasAskedUser;
    if (tab) {
      tab->closing_.reset();
      tab->scriptDialogs_.stay();
    }
    if (!mayClose) return answer(CloseAnswer::Stay);
    answer(hasAskedUser ? CloseAnswer::Leave : CloseAnswer::Unguarded);
  });
}

void BrowserTab::followResponsiveness(const WebView& view) {
  isUnresponsive = !view.isResponsive();
  if (isUnresponsive.peek()) return askAboutUnresponsivePage();
  askAgain_.cancel();
  if (unresponsiveQuestion_) questions.withdraw(*unresponsiveQuestion_);
}

void BrowserTab::askAboutUnresponsivePage() {
  if (unresponsiveQuestion_) return;
  const auto& address = url.peek();
  unresponsiveQuestion_ = questions.ask(
      {.voice = PageQuestion::Voice::Program,
       .symbol = "hourglass",
       .alert = {.messageText =
                     filled(_("{site} isn’t answering"),
                            {{"site", address ? displayHost(*address) : _("This page")}}),
                 .informativeText =
                     _("You can wait for the page or stop it.\nOther tabs go on as they are."),
                 .buttons = {_("Wait"), _("Stop")}},
       .escape = 0},
      [weak = weak_from_this()](const AlertAnswer& given) {
        const auto tab = weak.lock();
        if (!tab) return;
        tab->unresponsiveQuestion_.reset();
        if (given.button == kStopButton) return tab->stopUnresponsivePage();
        tab->scriptDialogs_.goOn();
        if (given.button) tab->askAgain_ = tab->services_.scheduler.start(askAgain(weak));
      });
}

Task<> BrowserTab::askAgain(std::weak_ptr<BrowserTab> weak) {
  const SleepResult slept = co_await sleep(kPatience);
  const auto tab = weak.lock();
  if (slept == SleepResult::Done && tab && tab->isUnresponsive.peek())
    tab->askAboutUnresponsivePage();
}

void BrowserTab::stopUnresponsivePage() {
  const auto view = webView_.peek();
  if (!view) return;
  view->endProcess();
  scriptDialogs_.pageDidChange();
  showErrorPage(*view,
                {.domain = "Orvel",
                 .code = 2,
                 .localizedDescription = _("This page wasn’t answering and was stopped.")},
                url.peek());
}

}  // namespace orvel
