#include "BrowserCore/Downloads/DownloadName.h"

#include <fmt/format.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>

#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

constexpr size_t kMaxName = 255;

bool isHarmful(UChar32 c) {
  return u_charType(c) == U_CONTROL_CHAR || u_hasBinaryProperty(c, UCHAR_BIDI_CONTROL);
}

std::string withoutHarmfulCharacters(std::string_view text) {
  const std::string whole = text::repairedUTF8(text);
  std::string result;
  const auto* data = reinterpret_cast<const uint8_t*>(whole.data());
  for (size_t i = 0; i < whole.size();) {
    const size_t begin = i;
    UChar32 c = 0;
    U8_NEXT(data, i, whole.size(), c);
    if (!isHarmful(c)) result.append(whole, begin, i - begin);
  }
  return result;
}

std::string fileName(std::string_view suggested) {
  const std::string_view path = text::trimmed(suggested, '/');
  std::string name = withoutHarmfulCharacters(path.substr(path.rfind('/') + 1));
  if (name.empty() || name == "." || name == "..") return "download";
  return name;
}

// The first `size` bytes, or fewer where that would cut a code point.
std::string_view cut(std::string_view text, size_t size) {
  if (text.size() <= size) return text;
  while (size > 0 && U8_IS_TRAIL(static_cast<uint8_t>(text[size]))) --size;
  return text.substr(0, size);
}

struct NameParts {
  std::string_view base;
  std::string_view extension;  // With its point; empty without one.

  std::string numbered(std::string_view number) const {
    return fmt::format("{}{}{}", cut(base, kMaxName - number.size() - extension.size()), number,
                       extension);
  }
};

// A point at either end of the name begins no extension, and none is longer than half a name.
NameParts split(std::string_view name) {
  const size_t point = name.rfind('.');
  if (point == std::string_view::npos || point == 0 || point + 1 == name.size() ||
      name.size() - point > kMaxName / 2)
    return {name, {}};
  return {name.substr(0, point), name.substr(point)};
}

}  // namespace

std::string downloadName(std::string_view suggested,
                         const std::function<bool(const std::string&)>& exists) {
  const std::string name = fileName(suggested);
  const NameParts parts = split(name);
  std::string candidate = parts.numbered("");
  for (uint64_t number = 2; exists(candidate); ++number)
    candidate = parts.numbered(fmt::format(" {}", number));
  return candidate;
}

std::string partialName(std::string_view name) {
  constexpr std::string_view kPart = ".part";
  constexpr size_t kRoom = 16;
  return std::string(cut(name, kMaxName - kRoom - kPart.size())).append(kPart);
}

bool isProgram(std::string_view name) {
  constexpr std::string_view kEndings[] = {".desktop", ".sh",  ".run", ".appimage",
                                           ".py",      ".jar", ".exe", ".msi"};
  const std::string lower = text::lowerASCII(name);
  return std::ranges::any_of(kEndings, [&](std::string_view end) { return lower.ends_with(end); });
}

}  // namespace orvel
