#include <array>
#include <bit>

#include "BrowserCore/ContentBlocking/ContentRule.h"
#include "BrowserCore/ContentBlocking/JSONWriter.h"

namespace orvel {

namespace {

constexpr std::array<std::string_view, 8> resourceTypeNames = {
    "document", "font", "image", "media", "raw", "script", "style-sheet", "svg-document"};

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

  filters::JSONWriter out_;
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
