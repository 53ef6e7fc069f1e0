#include "Base/Overloaded.h"
#include "Base/Texts.h"
#include "Models/Commands/QuickBar.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Windows/LittleWindows.h"

// The command bar comes, goes, and does what was chosen.
namespace orvel {

namespace {

bool actsInMainWindow(const Suggestion& suggestion) {
  return std::holds_alternative<suggestion::Command>(suggestion) ||
         std::holds_alternative<suggestion::Tab>(suggestion) ||
         std::holds_alternative<suggestion::Archived>(suggestion);
}

}  // namespace

void BrowserStore::showCommandBar(CommandBarMode mode) {
  if (window()) window()->present();
  animate(Spring::entry, [&] { commandBar = mode; });
}

void BrowserStore::hideCommandBar() { commandBar = std::nullopt; }

void BrowserStore::dismissCommandBar() {
  animate(Spring::quick, [this] { hideCommandBar(); });
  later([this] { focusWebView(); });
}

void BrowserStore::perform(const Suggestion& suggestion, CommandBarMode mode) {
  if (mode == CommandBarMode::Quick) {
    quickBar.orderQuickBarOut();
    if (actsInMainWindow(suggestion)) {
      if (window()) window()->present();
      services_.desktop.application.activate();
    }
  } else {
    animate(Spring::quick, [this] { hideCommandBar(); });
  }
  const auto openIfAny = [&](const std::optional<URL>& url) {
    if (url) open(*url, mode);
  };
  std::visit(Overloaded{[&](const suggestion::Answer& answer) {
                          services_.desktop.clipboard.setText(answer.answer);
                          if (mode == CommandBarMode::Quick) return;
                          showToast(filled(_("Copied {answer}"), {{"answer", answer.answer}}));
                          later([this] { focusWebView(); });
                        },
                        [&](const suggestion::Shortcut& chosen) {
                          openIfAny(chosen.shortcut.url(chosen.query));
                        },
                        [&](const suggestion::Address& address) {
                          open(address.url, mode, address.schemeSource);
                        },
                        [&](const suggestion::Search& search) {
                          openIfAny(settings.searchEngine.peek().searchURL(search.text));
                        },
                        [&](const suggestion::Command& chosen) {
                          if (chosen.command.perform) chosen.command.perform();
                          // Unless what it opened has taken the keyboard.
                          later([this] { focusWebView(); });
                        },
                        [&](const suggestion::Tab& chosen) { select(chosen.tab); },
                        [&](const suggestion::History& visit) { open(visit.entry.url, mode); },
                        [&](const suggestion::Archived& chosen) { archive.reopen(chosen.record); }},
             suggestion);
}

void BrowserStore::open(const URL& url, CommandBarMode mode, SchemeSource scheme) {
  if (mode == CommandBarMode::Quick) {
    littleWindows.openLittleWindow(url, nullptr, std::nullopt, scheme);
    services_.desktop.application.activate();
    return;
  }
  const TabRef selected =
      mode == CommandBarMode::CurrentTab ? activeSpace()->selectedTab() : nullptr;
  if (!selected) {
    openTab(url, {.schemeSource = scheme});
    return;
  }
  selected->load(url, scheme);
  later([this] { focusWebView(); });
}

}  // namespace orvel
