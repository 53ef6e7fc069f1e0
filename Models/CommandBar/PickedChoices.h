#pragma once

#include <optional>
#include <span>
#include <string>
#include <unordered_map>

#include "BrowserCore/Addresses/ChoiceMemory.h"
#include "Models/CommandBar/Suggestion.h"

namespace orvel {

class BrowserStore;

// What the command bar learns of what the user picks, and how it is forgotten. By the active
// space's profile; nothing is learned in a private one.
class PickedChoices {
 public:
  explicit PickedChoices(BrowserStore& store) : store_(store) {}

  // What was picked after what was typed.
  std::unordered_map<UUID, ChoiceMemory> byProfile;

  // From the disk.
  void restore();
  void learn(const Suggestion& suggestion, const std::string& query);
  // The one that was picked often enough after this query; null without one.
  const Suggestion* topChoice(const std::string& query,
                              std::span<const Suggestion> suggestions) const;
  // Everything, in every profile.
  void forgetChoices();
  // Absent `url`: all of the profile's.
  void forgetChoices(const UUID& profile, const std::optional<URL>& url = std::nullopt);

 private:
  void save();

  BrowserStore& store_;
};

}  // namespace orvel
