#include "Models/Tab/PageSource.h"

#include <fmt/format.h>

#include "Base/Markup.h"
#include "Base/Texts.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "BrowserCore/Text/Text.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

namespace {

// More than this is cut off: a page of that size answers slowly.
constexpr size_t kMaxSource = 8u << 20;

constexpr std::string_view kStyle = R"(
:root { color-scheme: light dark; --paper: #F4EFE3; --ink: #2B2620; --muted: #7A6F60; }
@media (prefers-color-scheme: dark) {
  :root { --paper: #1C1A17; --ink: #E8E1D3; --muted: #9A8F7E; }
}
body { margin: 0; background: var(--paper); color: var(--ink); counter-reset: line; }
pre { margin: 0; padding: 16px 16px 16px 0; font: 13px/18px monospace; tab-size: 4; }
code { display: block; padding-left: 72px; text-indent: -60px; white-space: pre-wrap;
  overflow-wrap: anywhere; counter-increment: line; font: inherit; }
code::before { content: counter(line); display: inline-block; width: 44px; margin-right: 16px;
  text-align: right; text-indent: 0; color: var(--muted); user-select: none; }
)";

}  // namespace

std::string sourcePage(std::string_view title, std::string_view source) {
  std::string lines;
  source = source.substr(0, text::prefix(source, kMaxSource).size());
  while (!source.empty()) {
    const size_t end = std::min(source.find('\n'), source.size());
    lines += "<code>" + escapedMarkup(source.substr(0, end)) + "\n</code>";
    source.remove_prefix(std::min(end + 1, source.size()));
  }
  return fmt::format(
      "<!doctype html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>{}</title>\n"
      "<style>{}</style>\n</head>\n<body>\n<pre>{}</pre>\n</body>\n</html>\n",
      escapedMarkup(title), kStyle, lines);
}

void openSource(BrowserStore& store, const TabRef& tab) {
  const auto view = tab->liveWebView();
  const auto& address = tab->url.peek();
  if (!view || !address) return;
  const std::string title = filled(_("Source of {site}"), {{"site", displayHost(*address)}});
  view->readSource(
      [weak = store.weak_from_this(), tab, title](const std::optional<std::string>& source) {
        const auto live = weak.lock();
        if (!live || tab->isDiscarded.peek()) return;
        if (!source) return live->showToast(_("This page has no source to show"));
        const TabRef opened = live->openTab(std::nullopt, {.after = tab});
        opened->webView()->loadHTMLString(sourcePage(title, *source), std::nullopt);
      });
}

}  // namespace orvel
