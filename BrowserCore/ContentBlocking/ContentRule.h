#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// One rule of the engine's content blocker: when it fires and what it then does. Rules are plain
// values without logic; their only way out is `encodedJSON`.
//
// A list of rules can be a hundred thousand long and most of its texts occur many times, so a rule
// holds views. Whoever makes a rule keeps its texts alive; the rules of a
// `FilterListConverter::Output` live as long as any copy of that output.
namespace orvel {

// What a page can load, in ascending order of the engine's names.
enum class ResourceType : uint8_t {
  document,
  font,
  image,
  media,
  raw,
  script,
  styleSheet,
  svgDocument,
};

// A set of resource types. Empty means absent: the rule isn't limited.
class ResourceTypes {
 public:
  constexpr ResourceTypes() = default;
  constexpr ResourceTypes(std::initializer_list<ResourceType> types) {
    for (const ResourceType type : types) insert(type);
  }

  constexpr void insert(ResourceType type) { bits_ |= bit(type); }
  [[nodiscard]] constexpr bool contains(ResourceType type) const {
    return (bits_ & bit(type)) != 0;
  }
  [[nodiscard]] constexpr bool isEmpty() const { return bits_ == 0; }
  // One bit a type, the first type in the lowest one.
  [[nodiscard]] constexpr uint8_t bits() const { return bits_; }

  [[nodiscard]] constexpr ResourceTypes subtracting(ResourceTypes other) const {
    ResourceTypes rest;
    rest.bits_ = static_cast<uint8_t>(bits_ & ~other.bits_);
    return rest;
  }

  friend bool operator==(const ResourceTypes&, const ResourceTypes&) = default;

 private:
  static constexpr uint8_t bit(ResourceType type) {
    return static_cast<uint8_t>(1U << static_cast<unsigned>(type));
  }

  uint8_t bits_ = 0;
};

// A list of sites, each an entry of the form `*` and a host in lower case, which also covers the
// host's subdomains. It is one text with the entries joined by commas, so that any number of rules
// can share it. Empty means absent.
class DomainList {
 public:
  constexpr DomainList() = default;
  constexpr explicit DomainList(std::string_view joined) : joined_(joined) {}

  [[nodiscard]] constexpr bool isEmpty() const { return joined_.empty(); }
  [[nodiscard]] constexpr std::string_view joined() const { return joined_; }

  friend bool operator==(const DomainList&, const DomainList&) = default;

 private:
  std::string_view joined_;
};

struct ContentRule {
  enum class LoadType : uint8_t { firstParty, thirdParty };
  enum class LoadContext : uint8_t { childFrame };

  // At most one of `ifDomain` and `unlessDomain` is present.
  struct Trigger {
    // A regular expression in the engine's dialect, matched against the whole address.
    std::string_view urlFilter;
    // Sites on which alone the rule fires, and sites on which it doesn't.
    DomainList ifDomain;
    DomainList unlessDomain;
    // Never false here: absent already means that case is ignored.
    std::optional<bool> urlFilterIsCaseSensitive;
    ResourceTypes resourceType;
    std::optional<LoadType> loadType;
    std::optional<LoadContext> loadContext;

    friend bool operator==(const Trigger&, const Trigger&) = default;
  };

  enum class ActionType : uint8_t {
    block,
    // Hide the elements that the selector matches.
    cssDisplayNone,
    // Undo what earlier rules of the same list did to this load.
    ignorePreviousRules,
  };

  struct Action {
    ActionType type = ActionType::block;
    // One selector or several joined with ", "; not empty exactly for `cssDisplayNone`.
    std::string_view selector;

    friend bool operator==(const Action&, const Action&) = default;
  };

  Trigger trigger;
  Action action;

  friend bool operator==(const ContentRule&, const ContentRule&) = default;
};

// The rules as one JSON array in the form that the engine compiles: no blanks, no escaped slashes,
// absent fields without a key. The order is kept, because the engine applies rules in order.
// Ill-formed UTF-8 becomes U+FFFD.
[[nodiscard]] std::string encodedJSON(std::span<const ContentRule> rules);

}  // namespace orvel
