#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Base/Published.h"
#include "BrowserCore/Look/Theme.h"
#include "Models/Spaces/Space.h"

namespace orvel {

class BrowserStore;

// The space that is being made or edited.
struct SpaceDraft {
  UUID id = UUID::random();
  std::optional<UUID> spaceID;  // absent for a new space
  std::string name;
  double hue = 0;
  std::string symbol;
  std::optional<UUID> profileID;  // absent: a profile of its own
  Space::Appearance appearance = Space::Appearance::Auto;

  friend bool operator==(const SpaceDraft&, const SpaceDraft&) = default;
};

// Making, editing and deleting spaces, and the end of a profile with its last one.
class SpaceEditing {
 public:
  explicit SpaceEditing(BrowserStore& store) : store_(store) {}

  Published<std::optional<SpaceDraft>, SpaceEditing> spaceDraft;
  // What the window shows in place of the active space's, while it is tried on.
  Published<std::optional<Theme>, SpaceEditing> previewTheme;
  Published<std::optional<Space::Appearance>, SpaceEditing> previewAppearance;

  // Both open a draft, each time a new one; new spaces walk through the themes and the symbols.
  void beginNewSpace();
  void beginEditing(const Space& space);
  void preview(const Theme& theme);
  void preview(Space::Appearance appearance);
  // Makes or edits the draft's space and ends the draft. A name of blanks does nothing; a space
  // that went away meanwhile is made anew, and never moves to another profile otherwise.
  void commit(const SpaceDraft& draft);
  // Ends the draft, and shows the active space's look again.
  void endDraft();
  // Whether the space is its profile's last.
  bool deletesProfile(const Space& space) const;
  // For good, with its tabs; its profile's last one takes along the favorites and all web data. The
  // last space of all stays.
  void deleteSpace(std::shared_ptr<Space> space);

 private:
  std::shared_ptr<Profile> profileFor(const std::optional<UUID>& id, const std::string& name);
  void removeWebsiteData(const std::shared_ptr<Profile>& profile);

  BrowserStore& store_;
};

}  // namespace orvel
