#include <algorithm>

#include "Models/CommandBar/ChoicesFile.h"
#include "Models/Store/BrowserStore.h"

// What the command bar learns of what the user picks, and how it is forgotten.
namespace orvel {

void BrowserStore::learn(const Suggestion& suggestion, const std::string& query) {
  const auto profile = activeSpace()->profile;
  const auto key = memoryKey(suggestion);
  if (profile->isPrivate || !key) return;
  choices[profile->id].record(query, *key, services_.scheduler.now());
  saveChoices();
}

const Suggestion* BrowserStore::topChoice(const std::string& query,
                                          std::span<const Suggestion> suggestions) const {
  const auto memory = choices.find(activeSpace()->profile->id);
  if (memory == choices.end()) return nullptr;
  std::vector<std::string> keys;
  for (const Suggestion& suggestion : suggestions)
    if (auto key = memoryKey(suggestion)) keys.push_back(std::move(*key));
  const auto top = memory->second.topChoice(query, keys);
  if (!top) return nullptr;
  const auto found = std::ranges::find_if(
      suggestions, [&](const Suggestion& suggestion) { return memoryKey(suggestion) == top; });
  return found == suggestions.end() ? nullptr : &*found;
}

void BrowserStore::forgetChoices() {
  choices.clear();
  services_.files.remove(services_.paths.choices());
}

void BrowserStore::forgetChoices(const UUID& profile, const std::optional<URL>& url) {
  if (!url)
    choices.erase(profile);
  else if (const auto memory = choices.find(profile); memory != choices.end())
    memory->second.forget("url:" + url->text());
  saveChoices();
}

void BrowserStore::saveChoices() {
  services_.files.write(services_.paths.choices(),
                        [copy = choices] { return ChoicesFile::encoded(copy); });
}

}  // namespace orvel
