#include "Base/Overloaded.h"
#include "Models/Store/BrowserStore.h"

// What a choice of the command bar does.
namespace orvel {

namespace {

bool actsInMainWindow(const Suggestion& suggestion) {
  return std::holds_alternative<suggestion::Command>(suggestion) ||
         std::holds_alternative<suggestion::Tab>(suggestion) ||
         std::holds_alternative<suggestion::Archived>(suggestion);
}

}  // namespace

void BrowserStore::perform(const Suggestion& suggestion, CommandBarMode mode) {
  if (mode == CommandBarMode::Quick) {
    orderQuickBarOut();
    if (actsInMainWindow(suggestion)) {
      if (window) window->present();
      services_.desktop.application.activate();
    }
  } else {
    animate(Spring::quick, [this] { commandBar = std::nullopt; });
  }
  const auto openIfAny = [&](const std::optional<URL>& url) {
    if (url) open(*url, mode);
  };
  std::visit(Overloaded{[&](const suggestion::Answer& answer) {
                          services_.desktop.clipboard.setText(answer.answer);
                          if (mode == CommandBarMode::Quick) return;
                          showToast("Copied " + answer.answer);
                          later([](BrowserStore& store) { store.focusWebView(); });
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
                          later([](BrowserStore& store) { store.focusWebView(); });
                        },
                        [&](const suggestion::Tab& chosen) { select(chosen.tab); },
                        [&](const suggestion::History& visit) { open(visit.entry.url, mode); },
                        [&](const suggestion::Archived& chosen) { reopen(chosen.record); }},
             suggestion);
}

void BrowserStore::open(const URL& url, CommandBarMode mode, SchemeSource scheme) {
  if (mode == CommandBarMode::Quick) {
    openLittleWindow(url, nullptr, std::nullopt, scheme);
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
  later([](BrowserStore& store) { store.focusWebView(); });
}

}  // namespace orvel
