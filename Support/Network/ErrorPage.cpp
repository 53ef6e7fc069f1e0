#include "Support/Network/ErrorPage.h"

#include <fmt/format.h>

#include <string_view>

#include "Base/Markup.h"
#include "Base/Texts.h"
#include "BrowserCore/Addresses/URLInput.h"

namespace orvel::ErrorPage {

namespace {

constexpr std::string_view kStyle = R"(
:root {
  color-scheme: light dark;
  --paper: #F4EFE3; --ink: #2B2620; --muted: #7A6F60; --accent: #6B2E2A;
}
@media (prefers-color-scheme: dark) {
  :root { --paper: #1C1A17; --ink: #E8E1D3; --muted: #9A8F7E; --accent: #B5574F; }
}
@font-face {
  font-family: ui-serif; font-weight: 600;
  src: local("EB Garamond"), local("Libertinus Serif"), local("Noto Serif");
}
body {
  font: 14px system-ui; display: grid; place-items: center; height: 100vh; margin: 0;
  background: var(--paper); color: var(--muted);
}
main { max-width: 420px; text-align: center; }
h1 { font: 600 24px ui-serif, Georgia, serif; color: var(--ink); margin: 0 0 8px; }
p { margin: 0; }
.guide {
  font: 600 30px ui-rounded; letter-spacing: 0.04em; color: var(--accent); margin: 0 0 14px;
}
a {
  display: inline-block; margin-top: 16px; padding: 7px 16px; border-radius: 8px;
  background: var(--accent); color: #F4EFE3; text-decoration: none;
}
)";

}  // namespace

bool isConnectionProblem(const LoadError& error) {
  using enum LoadError::Kind;
  switch (error.kind) {
    case NotConnected:
    case DNSLookupFailed:
    case ConnectionLost:
    case CannotConnect:
    case CannotFindHost:
    case TimedOut:
      return true;
    case Cancelled:
    case PolicyInterrupted:
    case BadCertificate:
    case DiskFull:
    case Other:
      return false;
  }
  return false;
}

std::string html(const LoadError& error, const std::optional<URL>& url) {
  const std::string title = escapedMarkup(
      filled(_("Can’t open {site}"), {{"site", url ? displayHost(*url) : _("This page")}}));
  const std::string guide = isConnectionProblem(error)
                                ? fmt::format("<p class=\"guide\" title=\"{}\">{}</p>\n",
                                              escapedMarkup(_("In large, friendly letters")),
                                              escapedMarkup(_("Don’t Panic")))
                                : "";
  const std::string link = url ? fmt::format("<a href=\"{}\">{}</a>\n", escapedMarkup(url->text()),
                                             escapedMarkup(_("Try Again")))
                               : "";
  return fmt::format(
      "<!doctype html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>{0}</title>\n"
      "<style>{1}</style>\n</head>\n<body>\n<main>\n{2}<h1>{0}</h1>\n<p>{3}</p>\n{4}"
      "</main>\n</body>\n</html>\n",
      title, kStyle, guide, escapedMarkup(error.localizedDescription), link);
}

}  // namespace orvel::ErrorPage
