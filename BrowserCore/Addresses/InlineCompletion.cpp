#include "BrowserCore/Addresses/InlineCompletion.h"

#include "BrowserCore/Text/Characters.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

// A text that can complete a typed one: a host, or a host and a path. It is compared in its two
// parts, since copying them for each page would be most of the work.
struct Form {
  std::string_view host;
  std::string_view path;

  size_t size() const { return host.size() + path.size(); }

  bool startsWith(std::string_view text) const {
    const size_t inHost = std::min(text.size(), host.size());
    return host.starts_with(text.substr(0, inHost)) && path.starts_with(text.substr(inHost));
  }

  std::string textBehind(size_t prefix) const {
    std::string whole(host);
    return whole.append(path).substr(prefix);
  }
};

enum class Reach { host, hostAndPath };

bool isInLowerCase(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c >= 0 && !(c >= 'A' && c <= 'Z'); });
}

// Calls `isWanted` with the forms of every page, in order, until one is; returns whether one was.
template <typename Predicate>
bool anyForm(std::span<const URL> urls, Reach reach, Predicate isWanted) {
  for (const URL& url : urls) {
    std::string_view host = url.host().value_or("");
    if (host.empty()) continue;
    std::string lowered;
    if (!isInLowerCase(host)) host = lowered = text::lower(host);
    std::string_view path = reach == Reach::host ? std::string_view{} : url.path();
    if (path.ends_with('/')) path.remove_suffix(1);
    const std::string_view shortHost = host.starts_with("www.") ? host.substr(4) : host;
    if (isWanted(Form{shortHost, path})) return true;
    if (shortHost.size() < host.size() && isWanted(Form{host, path})) return true;
  }
  return false;
}

}  // namespace

std::optional<std::string> InlineCompletion::complete(std::string_view typed,
                                                      std::span<const URL> urls) {
  if (text::characterCount(typed, 2) < 2 || typed.find(':') != std::string_view::npos ||
      text::containsWhiteSpace(typed))
    return std::nullopt;
  const std::string lowered = text::lower(typed);
  const std::string_view needle =
      std::string_view(lowered).substr(0, lowered.size() - (lowered.ends_with('/') ? 1 : 0));
  const Reach reach = lowered.find('/') == std::string::npos ? Reach::host : Reach::hostAndPath;

  std::optional<std::string> result;
  const bool namesPage = anyForm(urls, reach, [&](const Form& form) {
    if (form.size() == needle.size() && form.startsWith(needle)) return true;
    if (!result && form.size() > lowered.size() && form.startsWith(lowered))
      result = std::string(typed) + form.textBehind(lowered.size());
    return false;
  });
  if (namesPage) return std::nullopt;
  return result;
}

}  // namespace orvel
