#include <algorithm>
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

constexpr size_t maxEscapeSize = sizeof(Escape::text);

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

constexpr uint64_t highBits = 0x8080808080808080;

// The highest bit of each of the eight bytes that must be escaped. Bits above the lowest one found
// may be wrong, so only that one counts.
constexpr uint64_t escapedBytes(uint64_t word) {
  constexpr uint64_t ones = 0x0101010101010101;
  const uint64_t quotes = word ^ (ones * '"');
  const uint64_t backslashes = word ^ (ones * '\\');
  return (((word - ones * 0x20) & ~word) | ((quotes - ones) & ~quotes) |
          ((backslashes - ones) & ~backslashes)) &
         highBits;
}

// Writes into one buffer. Its memory is reserved for what the result will be about, and is made
// ready in steps that stay in the processor's cache until they are written over.
class Writer {
 public:
  explicit Writer(size_t expectedSize) {
    buffer_.reserve(expectedSize + literalRoom);
    next_ = buffer_.data();
    grow(literalRoom);
  }

  // For keys and signs. Between two other writes they take less than `literalRoom`, for which there
  // is always room.
  template <size_t size>
  void literal(const char (&text)[size]) {
    std::memcpy(next_, text, size - 1);
    next_ += size - 1;
  }

  void raw(std::string_view text) {
    makeRoom(text.size());
    next_ += text.copy(next_, text.size());
  }

  // Writes once more what was written from `begin` to `end`.
  void repeat(size_t begin, size_t end) {
    makeRoom(end - begin);
    std::memcpy(next_, buffer_.data() + begin, end - begin);
    next_ += end - begin;
  }

  // `text` as the inside of a JSON string; ill-formed UTF-8 becomes U+FFFD.
  void escaped(std::string_view text) {
    makeRoomFor(text);
    char* const begin = next_;
    if (copyEscaped(text) || text::isValidUTF8(text)) return;
    const std::string repaired = text::repairedUTF8(text);
    next_ = begin;
    makeRoomFor(repaired);
    copyEscaped(repaired);
  }

  [[nodiscard]] size_t size() const { return static_cast<size_t>(next_ - buffer_.data()); }

  std::string finish() && {
    buffer_.resize(size());
    return std::move(buffer_);
  }

 private:
  static constexpr size_t literalRoom = 256;

  [[nodiscard]] bool hasRoom(size_t size) const {
    return static_cast<size_t>(last_ - next_) >= size + literalRoom;
  }

  void makeRoom(size_t size) {
    if (!hasRoom(size)) [[unlikely]]
      grow(size + literalRoom);
  }

  // Counts exactly only where room for the worst case would make the buffer grow.
  void makeRoomFor(std::string_view text) {
    if (hasRoom(maxEscapeSize * text.size())) return;
    size_t size = maxEscapeSize;
    for (const char c : text) size += isEscaped(static_cast<unsigned char>(c)) ? maxEscapeSize : 1;
    makeRoom(size);
  }

  // Makes at least `size` bytes ready behind what is written.
  void grow(size_t size) {
    constexpr size_t step = 64 * 1024;
    const size_t used = this->size();
    buffer_.resize(std::max(used + size, std::min(used + size + step, buffer_.capacity())));
    next_ = buffer_.data() + used;
    last_ = buffer_.data() + buffer_.size();
  }

  // False if there are bytes outside ASCII, which are copied as they stand.
  bool copyEscaped(std::string_view text) {
    const char* from = text.data();
    const char* const end = from + text.size();
    char* to = next_;
    unsigned char seen = 0;
    uint64_t seenWords = 0;
    const auto copyOne = [&] {
      const auto byte = static_cast<unsigned char>(*from++);
      seen |= byte;
      if (isEscaped(byte)) {
        const Escape sequence = escape(byte);
        std::memcpy(to, sequence.text, sizeof(sequence.text));
        to += sequence.size;
      } else {
        *to++ = static_cast<char>(byte);
      }
    };
    while (end - from >= 8) {
      uint64_t word = 0;
      std::memcpy(&word, from, 8);
      std::memcpy(to, from, 8);
      const uint64_t found = escapedBytes(word);
      seenWords |= word;
      const int clean = found == 0 ? 8 : std::countr_zero(found) / 8;
      from += clean;
      to += clean;
      if (found != 0) copyOne();
    }
    while (from != end) copyOne();
    next_ = to;
    return ((seenWords & highBits) | (seen & 0x80U)) == 0;
  }

  std::string buffer_;
  // The end of what is written, and of what is ready to be written to.
  char* next_ = nullptr;
  char* last_ = nullptr;
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

class Encoder {
 public:
  explicit Encoder(size_t expectedSize) : out_(expectedSize) {}

  std::string encode(std::span<const ContentRule> rules) {
    out_.literal("[");
    const ContentRule* previous = nullptr;
    for (const ContentRule& rule : rules) {
      if (previous != nullptr) out_.literal(",");
      const size_t begin = out_.size();
      if (previous != nullptr && haveSameHead(previous->trigger, rule.trigger))
        out_.repeat(headBegin_, headEnd_);
      else
        head(rule.trigger);
      headBegin_ = begin;
      headEnd_ = out_.size();
      tail(rule);
      previous = &rule;
    }
    out_.literal("]");
    return std::move(out_).finish();
  }

 private:
  // The two rules of one filter share their texts, as do rules that hide elements on every site.
  // This is only about speed: to see texts at the same place is enough.
  static bool haveSameHead(const ContentRule::Trigger& a, const ContentRule::Trigger& b) {
    const auto isSame = [](std::string_view x, std::string_view y) {
      return x.data() == y.data() && x.size() == y.size();
    };
    return isSame(a.urlFilter, b.urlFilter) && isSame(a.ifDomain.joined(), b.ifDomain.joined()) &&
           isSame(a.unlessDomain.joined(), b.unlessDomain.joined()) &&
           a.urlFilterIsCaseSensitive == b.urlFilterIsCaseSensitive;
  }

  void head(const ContentRule::Trigger& trigger) {
    out_.literal(R"({"trigger":{"url-filter":")");
    out_.escaped(trigger.urlFilter);
    out_.literal("\"");
    if (const auto isSensitive = trigger.urlFilterIsCaseSensitive) {
      out_.literal(R"(,"url-filter-is-case-sensitive":)");
      out_.raw(*isSensitive ? "true" : "false");
    }
    if (!trigger.ifDomain.isEmpty()) {
      out_.literal(R"(,"if-domain":[")");
      entries(trigger.ifDomain);
    }
    if (!trigger.unlessDomain.isEmpty()) {
      out_.literal(R"(,"unless-domain":[")");
      entries(trigger.unlessDomain);
    }
  }

  void tail(const ContentRule& rule) {
    if (!rule.trigger.resourceType.isEmpty()) out_.raw(resourceTypes_[rule.trigger.resourceType]);
    if (rule.trigger.loadType == ContentRule::LoadType::firstParty)
      out_.literal(R"(,"load-type":["first-party"])");
    if (rule.trigger.loadType == ContentRule::LoadType::thirdParty)
      out_.literal(R"(,"load-type":["third-party"])");
    if (rule.trigger.loadContext) out_.literal(R"(,"load-context":["child-frame"])");
    switch (rule.action.type) {
      case ContentRule::ActionType::block:
        out_.literal(R"(},"action":{"type":"block")");
        break;
      case ContentRule::ActionType::cssDisplayNone:
        out_.literal(R"(},"action":{"type":"css-display-none")");
        break;
      case ContentRule::ActionType::ignorePreviousRules:
        out_.literal(R"(},"action":{"type":"ignore-previous-rules")");
        break;
    }
    if (!rule.action.selector.empty()) {
      out_.literal(R"(,"selector":")");
      out_.escaped(rule.action.selector);
      out_.literal("\"");
    }
    out_.literal("}}");
  }

  void entries(DomainList list) {
    std::string_view rest = list.joined();
    for (size_t comma = rest.find(','); comma != std::string_view::npos; comma = rest.find(',')) {
      out_.escaped(rest.substr(0, comma));
      out_.literal(R"(",")");
      rest.remove_prefix(comma + 1);
    }
    out_.escaped(rest);
    out_.literal("\"]");
  }

  Writer out_;
  // Where the head of the last rule stands: all of its trigger up to the domains.
  size_t headBegin_ = 0;
  size_t headEnd_ = 0;
  ResourceTypeTexts resourceTypes_;
};

// About as many bytes as the rules will take, for public lists a little more: a twelfth of their
// texts has to be escaped at most, and a site has ten letters or more.
size_t expectedSize(std::span<const ContentRule> rules) {
  size_t size = 256;
  for (const ContentRule& rule : rules) {
    const size_t texts = rule.trigger.urlFilter.size() + rule.action.selector.size();
    const size_t domains =
        rule.trigger.ifDomain.joined().size() + rule.trigger.unlessDomain.joined().size();
    size += 55 + texts + texts / 12;
    if (domains > 0) size += 21 + domains + domains / 5;
    if (!rule.trigger.resourceType.isEmpty())
      size += 19 + 10 * static_cast<size_t>(std::popcount(rule.trigger.resourceType.bits()));
    if (rule.trigger.loadType) size += 28;
    if (rule.trigger.loadContext) size += 31;
    if (rule.action.type != ContentRule::ActionType::block) size += 25;
  }
  return size;
}

}  // namespace

std::string encodedJSON(std::span<const ContentRule> rules) {
  return Encoder(expectedSize(rules)).encode(rules);
}

}  // namespace orvel
