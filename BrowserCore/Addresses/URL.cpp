#include "BrowserCore/Addresses/URL.h"

#include <charconv>
#include <limits>

#include "BrowserCore/Addresses/PercentCoding.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

constexpr bool isAlpha(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The length of the scheme that `text` begins with, without its colon; 0 when there is none.
size_t schemeLength(std::string_view text) {
  if (text.empty() || !isAlpha(text.front())) return 0;
  size_t end = 1;
  while (end < text.size() && (isAlpha(text[end]) || isDigit(text[end]) || text[end] == '+' ||
                               text[end] == '-' || text[end] == '.'))
    ++end;
  return end < text.size() && text[end] == ':' ? end : 0;
}

bool holdsOnlyAllowedBytes(std::string_view text) {
  for (const char c : text)
    if (static_cast<unsigned char>(c) <= 0x20 || c == 0x7f) return false;
  return text::isValidUTF8(text);
}

// RFC 3986, section 5.2.4.
std::string removeDotSegments(std::string_view input) {
  std::string output;
  output.reserve(input.size());
  const auto dropLast = [&output] {
    const size_t slash = output.rfind('/');
    output.resize(slash == std::string::npos ? 0 : slash);
  };
  while (!input.empty()) {
    if (input.starts_with("../")) {
      input.remove_prefix(3);
    } else if (input.starts_with("./")) {
      input.remove_prefix(2);
    } else if (input.starts_with("/./")) {
      input.remove_prefix(2);
    } else if (input == "/.") {
      input = "/";
    } else if (input.starts_with("/../")) {
      input.remove_prefix(3);
      dropLast();
    } else if (input == "/..") {
      input = "/";
      dropLast();
    } else if (input == "." || input == "..") {
      input = {};
    } else {
      const size_t next = input.find('/', 1);
      const size_t length = next == std::string_view::npos ? input.size() : next;
      output.append(input.substr(0, length));
      input.remove_prefix(length);
    }
  }
  return output;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  if (text.size() >= std::numeric_limits<uint32_t>::max()) return std::nullopt;
  if (schemeLength(text) == 0 || !holdsOnlyAllowedBytes(text)) return std::nullopt;
  return URL(std::string(text));
}

URL::URL(std::string text) : text_(std::move(text)) {
  const std::string_view view = text_;
  const auto offset = [](size_t position) { return static_cast<uint32_t>(position); };
  const auto find = [&view](std::string_view characters, size_t from) {
    const size_t found = view.find_first_of(characters, from);
    return found == std::string_view::npos ? view.size() : found;
  };
  schemeEnd_ = offset(schemeLength(view));
  authorityBegin_ = authorityEnd_ = schemeEnd_ + 1;
  if (view.substr(authorityBegin_).starts_with("//")) {
    authorityBegin_ += 2;
    authorityEnd_ = offset(find("/?#", authorityBegin_));
  }
  pathEnd_ = offset(find("?#", authorityEnd_));
  queryEnd_ = offset(find("#", pathEnd_));
}

std::string_view URL::slice(uint32_t from, uint32_t to) const {
  return std::string_view(text_).substr(from, to - from);
}

std::string_view URL::scheme() const { return slice(0, schemeEnd_); }

bool URL::hasScheme(std::string_view lowerCase) const {
  return text::equalsIgnoringASCIICase(scheme(), lowerCase);
}

std::optional<std::string_view> URL::authority() const {
  if (authorityBegin_ == schemeEnd_ + 1) return std::nullopt;
  return slice(authorityBegin_, authorityEnd_);
}

std::optional<std::string_view> URL::userInfo() const {
  const auto whole = authority();
  const size_t at = whole ? whole->rfind('@') : std::string_view::npos;
  if (at == std::string_view::npos) return std::nullopt;
  return whole->substr(0, at);
}

namespace {

struct HostAndPort {
  std::string_view host;
  std::optional<std::string_view> port;
};

HostAndPort split(std::string_view authority) {
  if (const size_t at = authority.rfind('@'); at != std::string_view::npos)
    authority.remove_prefix(at + 1);
  const size_t literalEnd =
      authority.starts_with('[') ? authority.find(']') : std::string_view::npos;
  const size_t colon =
      authority.find(':', literalEnd == std::string_view::npos ? 0 : literalEnd + 1);
  if (colon == std::string_view::npos) return {authority, std::nullopt};
  return {authority.substr(0, colon), authority.substr(colon + 1)};
}

}  // namespace

std::optional<std::string_view> URL::host() const {
  const auto whole = authority();
  if (!whole) return std::nullopt;
  const std::string_view host = split(*whole).host;
  if (host.empty()) return std::nullopt;
  return host;
}

std::optional<std::string_view> URL::portText() const {
  const auto whole = authority();
  return whole ? split(*whole).port : std::nullopt;
}

std::optional<uint16_t> URL::port() const {
  const std::string_view digits = portText().value_or("");
  uint16_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (digits.empty() || error != std::errc() || end != digits.data() + digits.size())
    return std::nullopt;
  return value;
}

std::string_view URL::path() const { return slice(authorityEnd_, pathEnd_); }

std::optional<std::string_view> URL::query() const {
  if (pathEnd_ == queryEnd_) return std::nullopt;
  return slice(pathEnd_ + 1, queryEnd_);
}

std::optional<std::string_view> URL::fragment() const {
  if (queryEnd_ == text_.size()) return std::nullopt;
  return std::string_view(text_).substr(queryEnd_ + 1);
}

std::optional<std::string> URL::decodedHost() const {
  const auto written = host();
  if (!written) return std::nullopt;
  std::string decoded = percentDecoded(*written);
  if (!holdsOnlyAllowedBytes(decoded)) return std::string(*written);
  return decoded;
}

std::string URL::decodedPath() const { return percentDecoded(path()); }

std::optional<URL> URL::resolve(std::string_view reference) const {
  if (schemeLength(reference) != 0) return parse(reference);
  const std::string_view base = text_;
  std::string result(base.substr(0, schemeEnd_ + 1));
  if (reference.starts_with("//")) return parse(result.append(reference));

  const size_t suffix = reference.find_first_of("?#");
  const std::string_view path = reference.substr(0, suffix);
  const std::string_view rest =
      suffix == std::string_view::npos ? std::string_view{} : reference.substr(suffix);
  if (path.empty()) {
    const size_t kept = rest.starts_with('?') ? pathEnd_ : queryEnd_;
    return parse(std::string(base.substr(0, kept)).append(rest));
  }
  result = base.substr(0, authorityEnd_);
  if (path.starts_with('/')) {
    result += removeDotSegments(path);
  } else {
    const std::string_view own = this->path();
    const size_t slash = own.rfind('/');
    std::string merged(slash == std::string_view::npos ? std::string_view{}
                                                       : own.substr(0, slash + 1));
    if (merged.empty() && authority()) merged = "/";
    result += removeDotSegments(merged.append(path));
  }
  return parse(result.append(rest));
}

}  // namespace orvel
