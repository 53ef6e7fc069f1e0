#include "BrowserCore/Addresses/ChoiceMemory.h"

#include <limits>

#include "BrowserCore/Text/Characters.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

using Choices = std::vector<ChoiceMemory::Choice>;

bool comesBefore(const ChoiceMemory::Choice& a, const ChoiceMemory::Choice& b) {
  return a.count != b.count ? a.count > b.count : a.lastUsed > b.lastUsed;
}

void note(Choices& list, std::string_view key, Date at) {
  auto choice = std::ranges::find(list, key, &ChoiceMemory::Choice::key);
  if (choice == list.end()) choice = list.insert(choice, {.key = std::string(key)});
  if (choice->count < std::numeric_limits<int64_t>::max()) ++choice->count;
  choice->lastUsed = at;
  std::ranges::stable_sort(list, comesBefore);
  if (list.size() > ChoiceMemory::kChoicesPerPrefix) list.resize(ChoiceMemory::kChoicesPerPrefix);
}

Date lastUse(const Choices& list) {
  Date latest = Date::min();
  for (const auto& choice : list) latest = std::max(latest, choice.lastUsed);
  return latest;
}

void forgetOldest(std::unordered_map<std::string, Choices>& choices, size_t count) {
  std::vector<std::pair<Date, const std::string*>> prefixes;
  prefixes.reserve(choices.size());
  for (const auto& [prefix, list] : choices) prefixes.emplace_back(lastUse(list), &prefix);
  const auto end = prefixes.begin() + static_cast<ptrdiff_t>(count);
  std::ranges::nth_element(prefixes, end - 1, {}, &decltype(prefixes)::value_type::first);
  for (auto prefix = prefixes.begin(); prefix != end; ++prefix)
    choices.erase(choices.find(*prefix->second));
}

}  // namespace

void ChoiceMemory::record(std::string_view query, std::string_view choice, Date at) {
  query = text::trimmed(query);
  for (const size_t end : text::characterEnds(query, kMaxPrefix))
    note(choices[text::lower(query.substr(0, end))], choice, at);
  if (choices.size() > kMaxPrefixes) forgetOldest(choices, choices.size() - kMaxPrefixes);
}

std::optional<std::string> ChoiceMemory::topChoice(std::string_view query,
                                                   std::span<const std::string> keys) const {
  query = text::trimmed(query);
  if (text::characterCount(query, kMaxPrefix + 1) > kMaxPrefix) return std::nullopt;
  const auto list = choices.find(text::lower(query));
  if (list == choices.end()) return std::nullopt;
  for (const Choice& choice : list->second)
    if (choice.count >= kPicksToCount && std::ranges::find(keys, choice.key) != keys.end())
      return choice.key;
  return std::nullopt;
}

void ChoiceMemory::forget(std::string_view key) {
  for (auto entry = choices.begin(); entry != choices.end();) {
    const size_t removed =
        std::erase_if(entry->second, [key](const Choice& choice) { return choice.key == key; });
    entry = removed > 0 && entry->second.empty() ? choices.erase(entry) : std::next(entry);
  }
}

}  // namespace orvel
