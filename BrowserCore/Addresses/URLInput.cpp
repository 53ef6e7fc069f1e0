#include "BrowserCore/Addresses/URLInput.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "BrowserCore/Addresses/PercentCoding.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

constexpr std::string_view kExplicitSchemes[] = {"http", "https", "file", "about", "data"};

// RFC 3986's characters of a registered name that stand for themselves.
constexpr CharacterSet kNameCharacters(
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$&'()*+,;=");

// Takes the first code point off a text that isn't empty; negative for ill-formed bytes.
UChar32 takeCodePoint(std::string_view& text) {
  const auto* data = reinterpret_cast<const uint8_t*>(text.data());
  const auto size = static_cast<int64_t>(text.size());
  int64_t length = 0;
  UChar32 c = 0;
  U8_NEXT(data, length, size, c);
  text.remove_prefix(static_cast<size_t>(length));
  return c;
}

// The two invisible characters that some scripts need inside a word.
bool isJoiner(UChar32 c) { return c == 0x200c || c == 0x200d; }

bool isNameCharacter(UChar32 c) {
  if (c < 0x80) return c >= 0 && kNameCharacters.holds(static_cast<char>(c));
  return u_isgraph(c) || isJoiner(c);
}

bool isRegisteredName(std::string_view host) {
  while (!host.empty()) {
    const UChar32 c = takeCodePoint(host);
    if (c != '%') {
      if (!isNameCharacter(c)) return false;
      continue;
    }
    if (host.size() < 2 || text::hexValue(host[0]) < 0 || text::hexValue(host[1]) < 0) return false;
    host.remove_prefix(2);
  }
  return true;
}

bool isIPv6Literal(std::string_view host) {
  if (host.size() > INET6_ADDRSTRLEN + 1 || !host.ends_with(']')) return false;
  in6_addr address;
  return inet_pton(AF_INET6, std::string(host.substr(1, host.size() - 2)).c_str(), &address) == 1;
}

bool canBeReached(const URL& url) {
  const std::string_view host = url.host().value_or("");
  if (host.empty() && (url.hasScheme("http") || url.hasScheme("https"))) return false;
  if (!url.portText().value_or("").empty() && !url.port()) return false;
  return host.starts_with('[') ? isIPv6Literal(host) : isRegisteredName(host);
}

std::optional<URL> parseReachable(std::string_view text) {
  auto url = URL::parse(text);
  if (url && !canBeReached(*url)) url.reset();
  return url;
}

bool hasExplicitScheme(const URL& url) {
  return std::any_of(std::begin(kExplicitSchemes), std::end(kExplicitSchemes),
                     [&url](std::string_view scheme) { return url.hasScheme(scheme); });
}

// Where a host stands in a text without a scheme; the whole text when it has no such place.
std::string_view hostCandidate(std::string_view text) {
  const std::string_view piece = text::splitOnce(text, '/').first;
  const std::string_view site = piece.empty() ? text : piece;
  const std::string_view host = text::splitOnce(site, ':').first;
  return host.empty() ? site : host;
}

// \d{1,3}(\.\d{1,3}){3} with the digits of every script; the groups' values don't matter.
bool isFourNumbers(std::string_view host) {
  constexpr int kGroups = 4;
  constexpr int kMaxDigits = 3;
  int groups = 1;
  int digits = 0;
  while (!host.empty()) {
    const UChar32 c = takeCodePoint(host);
    if (c >= 0 && u_isdigit(c)) {
      if (++digits > kMaxDigits) return false;
    } else if (c == '.' && digits > 0 && groups < kGroups) {
      ++groups;
      digits = 0;
    } else {
      return false;
    }
  }
  return groups == kGroups && digits > 0;
}

// At least two characters, all of them letters. A mark belongs to the letter before it.
bool isTopLevelLabel(std::string_view label) {
  int letters = 0;
  while (!label.empty()) {
    const UChar32 c = takeCodePoint(label);
    const bool isMark = (U_GET_GC_MASK(c) & U_GC_M_MASK) != 0 || isJoiner(c);
    if (isMark ? letters == 0 : !u_isUAlphabetic(c)) return false;
    if (!isMark && letters < 2) ++letters;
  }
  return letters == 2;
}

// The last piece between dots that isn't empty; empty without one.
std::string_view lastLabel(std::string_view host) {
  const std::string_view labels = text::trimmed(host, '.');
  return labels.substr(labels.rfind('.') + 1);
}

bool isDomain(std::string_view host) {
  return host.find('.') != std::string_view::npos && isTopLevelLabel(lastLabel(host));
}

std::string_view lastPathComponent(std::string_view path) {
  const std::string_view components = text::trimmed(path, '/');
  if (components.empty()) return path.substr(0, 1);
  return components.substr(components.rfind('/') + 1);
}

// [\d.]+|\[.*\] with the digits of every script.
bool isAddressLiteral(std::string_view host) {
  if (host.size() > 1 && host.starts_with('[') && host.ends_with(']')) return true;
  while (!host.empty()) {
    const UChar32 c = takeCodePoint(host);
    if (c != '.' && (c < 0 || !u_isdigit(c))) return false;
  }
  return true;
}

}  // namespace

std::optional<URL> URLInput::explicitURL(std::string_view text) {
  const std::string_view trimmed = text::trimmed(text);
  if (trimmed.empty() || text::containsWhiteSpace(trimmed)) return std::nullopt;
  if (auto url = parseReachable(trimmed); url && hasExplicitScheme(*url)) return url;

  const std::string_view host = hostCandidate(trimmed);
  if (text::equalsIgnoringASCIICase(host, "localhost") || isFourNumbers(host))
    return parseReachable("http://" + std::string(trimmed));
  if (isDomain(host)) return parseReachable("https://" + std::string(trimmed));
  return std::nullopt;
}

std::string displayHost(const URL& url) {
  if (auto host = url.decodedHost()) {
    if (host->starts_with("www.")) host->erase(0, 4);
    return *std::move(host);
  }
  if (url.hasScheme("file")) return std::string(lastPathComponent(url.decodedPath()));
  return url.text();
}

std::optional<std::string> siteKey(const URL& url) {
  const auto decoded = url.decodedHost();
  if (!decoded) return std::nullopt;
  const std::string host = text::lower(*decoded);
  if (isAddressLiteral(host)) return host;
  const std::string_view last = lastLabel(host);
  const std::string_view before = lastLabel({host.data(), last.data()});
  return before.empty() ? std::string(last) : fmt::format("{}.{}", before, last);
}

bool isHostWithin(std::string_view host, std::string_view domain) {
  if (!host.ends_with(domain)) return false;
  return host.size() == domain.size() || host[host.size() - domain.size() - 1] == '.';
}

}  // namespace orvel
