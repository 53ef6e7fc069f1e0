#include "BrowserCore/ContentBlocking/HidingRules.h"

#include <algorithm>
#include <memory>
#include <span>

#include "BrowserCore/ContentBlocking/ExceptionSites.h"
#include "BrowserCore/Text/Text.h"

namespace orvel::filters {

namespace {

constexpr size_t maxSelectorsOfRule = 50;
constexpr size_t maxScopedRules = 60000;
// A list could be written so that tens of thousands of rules each repeat all its exceptions. Public
// lists stay below a thousandth of this.
constexpr size_t maxMergedSize = 64U << 20U;

class HidingRules {
 public:
  HidingRules(const CosmeticFilters& filters, const DomainScopes& scopes, TextArena& arena,
              size_t room, std::vector<ContentRule>& rules)
      : filters_(filters),
        scopes_(scopes),
        arena_(arena),
        room_(room),
        rules_(rules),
        sites_(filters.selectorCount()) {}

  void appendAll() {
    for (const uint32_t selector : filters_.genericSelectors())
      if (!isExcepted(selector)) append({}, {&selector, 1});
    for (const uint32_t selector : filters_.genericSelectors())
      if (isExcepted(selector)) appendExcepted(selector, {});
    for (const uint32_t scope : filters_.scopeOrder()) appendScope(scope);
  }

  [[nodiscard]] int64_t givenUp() const { return givenUp_; }

 private:
  [[nodiscard]] bool isExcepted(uint32_t selector) const {
    return filters_.exceptions(selector) != CosmeticFilters::none;
  }

  const ExceptionSites& exceptionSites(uint32_t selector) {
    std::unique_ptr<const ExceptionSites>& sites = sites_[selector];
    if (sites) return *sites;
    std::vector<std::string_view> entries;
    for (uint32_t i = filters_.exceptions(selector); i != CosmeticFilters::none;
         i = filters_.link(i).next) {
      const DomainList list = scopes_[filters_.link(i).number].ifDomain;
      for (const std::string_view entry : text::splitNonEmpty(list.joined(), ','))
        entries.push_back(entry);
    }
    sites = std::make_unique<const ExceptionSites>(std::move(entries));
    return *sites;
  }

  void appendScope(uint32_t number) {
    const DomainScope scope = scopes_[number];
    kept_.clear();
    for (uint32_t i = filters_.scopedSelectors(number); i != CosmeticFilters::none;
         i = filters_.link(i).next) {
      const uint32_t selector = filters_.link(i).number;
      if (!isExcepted(selector))
        kept_.push_back(selector);
      else if (scope.ifDomain.isEmpty())
        appendExcepted(selector, scope.unlessDomain);
      else if (exceptionSites(selector).isRelated(scope.ifDomain))
        ++givenUp_;
      else
        kept_.push_back(selector);
    }
    for (std::span<const uint32_t> rest = kept_; !rest.empty();) {
      const auto chunk = rest.first(std::min(rest.size(), maxSelectorsOfRule));
      if (takesScoped()) append(scope, chunk);
      rest = rest.subspan(chunk.size());
    }
  }

  // A rule for all sites but those that except the selector and those of `more`.
  void appendExcepted(uint32_t selector, DomainList more) {
    if (!takesScoped()) return;
    std::vector<std::string_view> entries = text::splitNonEmpty(more.joined(), ',');
    const std::vector<std::string_view>& excepted = exceptionSites(selector).entries();
    entries.insert(entries.end(), excepted.begin(), excepted.end());
    std::ranges::sort(entries);
    entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
    const std::string_view merged = joined(entries, ",");
    mergedSize_ += merged.size();
    append({.unlessDomain = DomainList(merged)}, {&selector, 1});
  }

  // Counts a rule for some sites; false if there are too many, which gives it up.
  bool takesScoped() {
    if (++scopedCount_ <= maxScopedRules && mergedSize_ <= maxMergedSize && room_ > 0) return true;
    ++givenUp_;
    return false;
  }

  void append(const DomainScope& scope, std::span<const uint32_t> selectors) {
    if (room_ == 0) {
      ++givenUp_;
      return;
    }
    --room_;
    texts_.clear();
    for (const uint32_t selector : selectors) texts_.push_back(filters_.selector(selector));
    rules_.push_back({.trigger = scope.trigger(".*"),
                      .action = {ContentRule::ActionType::cssDisplayNone, joined(texts_, ", ")}});
  }

  std::string_view joined(std::span<const std::string_view> texts, std::string_view separator) {
    size_t size = (texts.size() - 1) * separator.size();
    for (const std::string_view text : texts) size += text.size();
    char* end = arena_.reserve(size);
    for (const std::string_view& text : texts) {
      if (&text != texts.data()) end += separator.copy(end, separator.size());
      end += text.copy(end, text.size());
    }
    return arena_.commit(size);
  }

  const CosmeticFilters& filters_;
  const DomainScopes& scopes_;
  TextArena& arena_;
  size_t room_;
  std::vector<ContentRule>& rules_;
  // By the number of the selector, made when first asked for.
  std::vector<std::unique_ptr<const ExceptionSites>> sites_;
  int64_t givenUp_ = 0;
  size_t scopedCount_ = 0;
  size_t mergedSize_ = 0;
  std::vector<uint32_t> kept_;
  std::vector<std::string_view> texts_;
};

}  // namespace

int64_t appendHidingRules(const CosmeticFilters& filters, const DomainScopes& scopes,
                          TextArena& arena, size_t room, std::vector<ContentRule>& rules) {
  HidingRules hiding(filters, scopes, arena, room, rules);
  hiding.appendAll();
  return hiding.givenUp();
}

}  // namespace orvel::filters
