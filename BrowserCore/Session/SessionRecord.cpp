#include "BrowserCore/Session/SessionRecord.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "BrowserCore/Session/SessionRecordV1.h"

namespace orvel {

using JSONCoding::Decoder;
using JSONCoding::DecodingError;
using JSONCoding::Document;
using JSONCoding::Encoder;
using JSONCoding::Value;

static double finite(double value, double otherwise) {
  return std::isfinite(value) ? value : otherwise;
}

static bool isFinite(const std::vector<double>& values) {
  return std::all_of(values.begin(), values.end(),
                     [](double value) { return std::isfinite(value); });
}

static void encode(Encoder& encoder, const ProfileRecord& profile) {
  encoder.beginObject();
  encoder.field("favorites", profile.favorites);
  encoder.field("id", profile.id);
  encoder.field("name", profile.name);
  encoder.endObject();
}

static bool decode(Decoder& decoder, Value value, ProfileRecord& profile) {
  return decoder.field(value, "id", profile.id) && decoder.field(value, "name", profile.name) &&
         decoder.field(value, "favorites", profile.favorites);
}

static void encode(Encoder& encoder, const SpaceRecord& space) {
  encoder.beginObject();
  encoder.field("appearance", space.appearance);
  encoder.field("hue", finite(space.hue, SpaceRecord::kDefaultHue));
  encoder.field("id", space.id);
  encoder.field("name", space.name);
  encoder.field("pinned", space.pinned);
  encoder.field("profileID", space.profileID);
  encoder.field("selectedTabID", space.selectedTabID);
  if (!space.split.empty()) encoder.field("split", space.split);
  if (!space.splitWidths.empty() && isFinite(space.splitWidths))
    encoder.field("splitWidths", space.splitWidths);
  encoder.field("symbol", space.symbol);
  encoder.field("today", space.today);
  encoder.endObject();
}

// A list that may be missing; empty then.
template <typename T>
static bool optionalList(Decoder& decoder, Value object, std::string_view key,
                         std::vector<T>& list) {
  std::optional<std::vector<T>> found;
  if (!decoder.field(object, key, found)) return false;
  list = std::move(found).value_or(std::vector<T>());
  return true;
}

static bool decode(Decoder& decoder, Value value, SpaceRecord& space) {
  return decoder.field(value, "id", space.id) && decoder.field(value, "name", space.name) &&
         decoder.field(value, "symbol", space.symbol) && decoder.field(value, "hue", space.hue) &&
         decoder.field(value, "profileID", space.profileID) &&
         decoder.field(value, "selectedTabID", space.selectedTabID) &&
         decoder.field(value, "pinned", space.pinned) &&
         decoder.field(value, "today", space.today) &&
         optionalList(decoder, value, "split", space.split) &&
         optionalList(decoder, value, "splitWidths", space.splitWidths) &&
         decoder.field(value, "appearance", space.appearance);
}

static bool decode(Decoder& decoder, Value value, SessionRecord& session) {
  return decoder.field(value, "schemaVersion", session.schemaVersion) &&
         decoder.field(value, "activeSpaceID", session.activeSpaceID) &&
         decoder.field(value, "isSidebarVisible", session.isSidebarVisible) &&
         decoder.field(value, "sidebarWidth", session.sidebarWidth) &&
         decoder.field(value, "profiles", session.profiles) &&
         decoder.field(value, "spaces", session.spaces);
}

void encode(Encoder& encoder, const SessionRecord& session) {
  encoder.beginObject();
  encoder.field("activeSpaceID", session.activeSpaceID);
  encoder.field("isSidebarVisible", session.isSidebarVisible);
  encoder.field("profiles", session.profiles);
  encoder.field("schemaVersion", session.schemaVersion);
  encoder.field("sidebarWidth", finite(session.sidebarWidth, SessionRecord::kDefaultSidebarWidth));
  encoder.field("spaces", session.spaces);
  encoder.endObject();
}

std::string SessionRecord::encoded() const {
  Encoder encoder;
  encode(encoder, *this);
  return std::move(encoder).finish();
}

Result<SessionRecord::Decoded, UnreadableSession> SessionRecord::decode(std::string_view data,
                                                                        Date now) {
  const auto document = Document::parse(data);
  if (!document) return Failure(document.error());
  const Value root = document->root();

  Decoder decoder;
  std::optional<int64_t> version;
  if (!root.isObject()) {
    decoder.fail(root, "an object");
    return Failure(decoder.error());
  }
  if (!decoder.field(root, "schemaVersion", version)) return Failure(decoder.error());
  switch (const int64_t source = version.value_or(1)) {
    case 1: {
      SessionRecordV1 record;
      if (!orvel::decode(decoder, root, record)) return Failure(decoder.error());
      return Decoded{record.upgraded(now), source};
    }
    case currentVersion: {
      SessionRecord record;
      if (!orvel::decode(decoder, root, record)) return Failure(decoder.error());
      return Decoded{std::move(record), source};
    }
    default:
      return Failure(SessionError{source});
  }
}

std::string description(const UnreadableSession& why) {
  if (const auto* error = std::get_if<DecodingError>(&why)) return error->description;
  return fmt::format("its schema version {} is not supported",
                     std::get<SessionError>(why).unsupportedVersion);
}

}  // namespace orvel
