#include <array>
#include <bit>
#include <cstring>

#include "BrowserCore/ContentBlocking/ContentRule.h"
#include "BrowserCore/Text.h"

namespace orvel {

namespace {

constexpr std::array<std::string_view, 8> resourceTypeNames = {
    "document", "font", "image", "media", "raw", "script", "style-sheet", "svg-document"};

// What a byte below 0x20, a quote or a backslash becomes.
struct Escape {
  char text[6];
  uint8_t size;
};

constexpr Escape escape(unsigned char c) {
  switch (c) {
    case '"':
      return {{'\\', '"'}, 2};
    case '\\':
      return {{'\\', '\\'}, 2};
    case '\b':
      return {{'\\', 'b'}, 2};
    case '\f':
      return {{'\\', 'f'}, 2};
    case '\n':
      return {{'\\', 'n'}, 2};
    case '\r':
      return {{'\\', 'r'}, 2};
    case '\t':
      return {{'\\', 't'}, 2};
    default:
      return {{'\\', 'u', '0', '0', c < 0x10 ? '0' : '1', "0123456789abcdef"[c & 15]}, 6};
  }
}

constexpr bool isEscaped(unsigned char c) { return c < 0x20 || c == '"' || c == '\\'; }

// Without an early end, so that the compiler can take many bytes at a time.
bool isASCII(std::string_view text) {
  unsigned char all = 0;
  for (const char c : text) all |= static_cast<unsigned char>(c);
  return all < 0x80;
}

// The highest bit of each of the eight bytes that must be escaped. Bits above the lowest one found
// may be wrong, so only that one counts.
constexpr uint64_t escapedBytes(uint64_t word) {
  constexpr uint64_t ones = 0x0101010101010101;
  constexpr uint64_t high = 0x8080808080808080;
  const uint64_t quotes = word ^ (ones * '"');
  const uint64_t backslashes = word ^ (ones * '\\');
  return (((word - ones * 0x20) & ~word) | ((quotes - ones) & ~quotes) |
          ((backslashes - ones) & ~backslashes)) &
         high;
}

// The texts of a rule set are written twice by the same code: into this, which only counts, and
// then into a buffer of exactly the size that was counted.
class Counter {
 public:
  void raw(std::string_view text) { size_ += text.size(); }
  void escaped(std::string_view text) {
    size_t size = text.size();
    for (const char c : text) {
      const auto byte = static_cast<unsigned char>(c);
      size += static_cast<size_t>(byte == '"') + static_cast<size_t>(byte == '\\') +
              static_cast<size_t>(byte < 0x20);
    }
    if (size != text.size())
      for (const char c : text)
        if (static_cast<unsigned char>(c) < 0x20)
          size += escape(static_cast<unsigned char>(c)).size - 2U;
    size_ += size;
  }
  [[nodiscard]] size_t size() const { return size_; }

 private:
  size_t size_ = 0;
};

class Writer {
 public:
  explicit Writer(char* begin) : end_(begin) {}

  void raw(std::string_view text) {
    std::memcpy(end_, text.data(), text.size());
    end_ += text.size();
  }

  void escaped(std::string_view text) {
    const char* next = text.data();
    const char* const last = next + text.size();
    while (last - next >= 8) {
      uint64_t word = 0;
      std::memcpy(&word, next, 8);
      std::memcpy(end_, next, 8);
      if constexpr (std::endian::native == std::endian::little) {
        const uint64_t found = escapedBytes(word);
        const int clean = found == 0 ? 8 : std::countr_zero(found) / 8;
        next += clean;
        end_ += clean;
        if (found != 0) one(*next++);
      } else {
        one(*next++);
      }
    }
    while (next != last) one(*next++);
  }

 private:
  void one(char c) {
    const auto byte = static_cast<unsigned char>(c);
    if (!isEscaped(byte)) {
      *end_++ = c;
      return;
    }
    const Escape text = escape(byte);
    raw({text.text, text.size});
  }

  char* end_;
};

// The key and list of each set of resource types that occurs, made once.
class ResourceTypeTexts {
 public:
  std::string_view operator[](ResourceTypes types) {
    std::string& text = texts_[types.bits()];
    if (text.empty()) {
      text = ",\"resource-type\":[";
      for (size_t i = 0; i < resourceTypeNames.size(); ++i) {
        if (!types.contains(static_cast<ResourceType>(i))) continue;
        if (text.back() != '[') text += ',';
        text.append("\"").append(resourceTypeNames[i]).append("\"");
      }
      text += ']';
    }
    return text;
  }

 private:
  std::array<std::string, 256> texts_;
};

template <typename Sink>
class Encoder {
 public:
  Encoder(Sink& sink, ResourceTypeTexts& resourceTypes)
      : sink_(sink), resourceTypes_(resourceTypes) {}

  void rules(std::span<const ContentRule> rules) {
    sink_.raw("[");
    for (const ContentRule& each : rules) {
      if (&each != rules.data()) sink_.raw(",");
      rule(each);
    }
    sink_.raw("]");
  }

 private:
  void rule(const ContentRule& rule) {
    sink_.raw("{\"trigger\":{\"url-filter\":\"");
    text(rule.trigger.urlFilter);
    sink_.raw("\"");
    if (const auto sensitive = rule.trigger.urlFilterIsCaseSensitive) {
      sink_.raw(",\"url-filter-is-case-sensitive\":");
      sink_.raw(*sensitive ? "true" : "false");
    }
    if (!rule.trigger.ifDomain.isEmpty()) {
      sink_.raw(",\"if-domain\":[\"");
      entries(rule.trigger.ifDomain);
    }
    if (!rule.trigger.unlessDomain.isEmpty()) {
      sink_.raw(",\"unless-domain\":[\"");
      entries(rule.trigger.unlessDomain);
    }
    if (!rule.trigger.resourceType.isEmpty()) sink_.raw(resourceTypes_[rule.trigger.resourceType]);
    if (const auto type = rule.trigger.loadType)
      sink_.raw(*type == ContentRule::LoadType::firstParty ? ",\"load-type\":[\"first-party\"]"
                                                           : ",\"load-type\":[\"third-party\"]");
    if (rule.trigger.loadContext) sink_.raw(",\"load-context\":[\"child-frame\"]");
    switch (rule.action.type) {
      case ContentRule::ActionType::block:
        sink_.raw("},\"action\":{\"type\":\"block\"");
        break;
      case ContentRule::ActionType::cssDisplayNone:
        sink_.raw("},\"action\":{\"type\":\"css-display-none\"");
        break;
      case ContentRule::ActionType::ignorePreviousRules:
        sink_.raw("},\"action\":{\"type\":\"ignore-previous-rules\"");
        break;
    }
    if (!rule.action.selector.empty()) {
      sink_.raw(",\"selector\":\"");
      text(rule.action.selector);
      sink_.raw("\"");
    }
    sink_.raw("}}");
  }

  void entries(DomainList list) {
    std::string_view rest = list.joined();
    for (size_t comma = rest.find(','); comma != std::string_view::npos; comma = rest.find(',')) {
      text(rest.substr(0, comma));
      sink_.raw("\",\"");
      rest.remove_prefix(comma + 1);
    }
    text(rest);
    sink_.raw("\"]");
  }

  void text(std::string_view text) {
    if (isASCII(text) || text::isValidUTF8(text))
      sink_.escaped(text);
    else
      sink_.escaped(text::repairedUTF8(text));
  }

  Sink& sink_;
  ResourceTypeTexts& resourceTypes_;
};

}  // namespace

std::string encodedJSON(std::span<const ContentRule> rules) {
  ResourceTypeTexts resourceTypes;
  Counter counter;
  Encoder(counter, resourceTypes).rules(rules);
  std::string json(counter.size(), '\0');
  Writer writer(json.data());
  Encoder(writer, resourceTypes).rules(rules);
  return json;
}

}  // namespace orvel
