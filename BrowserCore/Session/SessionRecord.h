#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "BrowserCore/Result.h"
#include "BrowserCore/Session/SidebarItemRecord.h"

namespace orvel {

struct ProfileRecord {
  UUID id;  // also names the profile's web data store
  std::string name;
  std::vector<TabRecord> favorites;

  friend bool operator==(const ProfileRecord&, const ProfileRecord&) = default;
};

struct SpaceRecord {
  static constexpr double kDefaultHue = 0.94;

  UUID id;
  std::string name;
  std::string symbol;  // the name of the space's icon
  double hue = kDefaultHue;
  UUID profileID;
  std::optional<UUID> selectedTabID;
  std::vector<SidebarItemRecord> pinned;
  std::vector<TabRecord> today;
  std::vector<UUID> split;                // ids of the tabs side by side; empty without a split
  std::vector<double> splitWidths;        // the panes' shares; empty when never moved
  std::optional<std::string> appearance;  // "light" or "dark"; absent, or any other text: automatic

  friend bool operator==(const SpaceRecord&, const SpaceRecord&) = default;
};

// The session file is of a schema that this program doesn't know, most likely of a later program.
struct SessionError {
  int64_t unsupportedVersion;
};

// Why there is no session in the bytes.
using UnreadableSession = std::variant<SessionError, JSONCoding::DecodingError>;

// What "session.json" holds: every profile, space and tab.
struct SessionRecord {
  static constexpr int64_t currentVersion = 2;
  static constexpr double kDefaultSidebarWidth = 248;

  int64_t schemaVersion = currentVersion;
  std::optional<UUID> activeSpaceID;
  bool isSidebarVisible = true;
  double sidebarWidth = kDefaultSidebarWidth;  // in points
  std::vector<ProfileRecord> profiles;
  std::vector<SpaceRecord> spaces;  // in the sidebar's order

  // A decoded file, upgraded where its own schema version was older.
  struct Decoded;

  // Reads a file of the present or the previous version; tabs of the previous one count as active
  // at `now`. Whatever can't be decoded anywhere in the bytes fails the whole. Unknown keys are
  // passed over; of a key that stands twice in one object the last counts.
  [[nodiscard]] static Result<Decoded, UnreadableSession> decode(std::string_view data, Date now);

  // The file's bytes. Never fails: a width or hue that isn't finite is written as the default, and
  // split widths that aren't as none.
  [[nodiscard]] std::string encoded() const;

  friend bool operator==(const SessionRecord&, const SessionRecord&) = default;
};

struct SessionRecord::Decoded {
  SessionRecord record;
  int64_t sourceVersion;  // what the bytes had
};

void encode(JSONCoding::Encoder& encoder, const SessionRecord& session);

// One sentence for the log.
[[nodiscard]] std::string description(const UnreadableSession& why);

}  // namespace orvel
