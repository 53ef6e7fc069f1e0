#include "Models/CommandBar/PickedChoices.h"

#include <algorithm>

#include "Models/CommandBar/ChoicesFile.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

void PickedChoices::restore() {
  const Services& services = store_.services();
  if (const auto bytes = services.files.files().read(services.paths.choices()))
    byProfile = ChoicesFile::decode(*bytes).value_or(ChoicesFile::Choices());
}

void PickedChoices::learn(const Suggestion& suggestion, const std::string& query) {
  const auto profile = store_.activeSpace()->profile;
  const auto key = memoryKey(suggestion);
  if (profile->isPrivate || !key) return;
  byProfile[profile->id].record(query, *key, store_.services().scheduler.now());
  save();
}

const Suggestion* PickedChoices::topChoice(const std::string& query,
                                           std::span<const Suggestion> suggestions) const {
  const auto memory = byProfile.find(store_.activeSpace()->profile->id);
  if (memory == byProfile.end()) return nullptr;
  std::vector<std::string> keys;
  for (const Suggestion& suggestion : suggestions)
    if (auto key = memoryKey(suggestion)) keys.push_back(std::move(*key));
  const auto top = memory->second.topChoice(query, keys);
  if (!top) return nullptr;
  const auto found = std::ranges::find_if(
      suggestions, [&](const Suggestion& suggestion) { return memoryKey(suggestion) == top; });
  return found == suggestions.end() ? nullptr : &*found;
}

void PickedChoices::forgetChoices() {
  byProfile.clear();
  store_.services().files.remove(store_.services().paths.choices());
}

void PickedChoices::forgetChoices(const UUID& profile, const std::optional<URL>& url) {
  if (!url)
    byProfile.erase(profile);
  else if (const auto memory = byProfile.find(profile); memory != byProfile.end())
    memory->second.forget("url:" + url->text());
  save();
}

void PickedChoices::save() {
  store_.services().files.write(store_.services().paths.choices(),
                                [copy = byProfile] { return ChoicesFile::encoded(copy); });
}

}  // namespace orvel
