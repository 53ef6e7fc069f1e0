#include <algorithm>

#include "BrowserCore/Session/JSONDecoder.h"
#include "BrowserCore/Session/JSONEncoder.h"
#include "Models/Settings/Settings.h"

// The settings' stored form. It has no version: what is new takes its default in an old document.
namespace orvel {

using JSONCoding::Decoder;
using JSONCoding::Encoder;
using JSONCoding::Value;

namespace {

std::string_view rawText(SearchEngine engine) { return engine.id(); }

std::string_view rawText(ExternalLinks links) {
  return links == ExternalLinks::LittleWindow ? "littleWindow" : "currentSpace";
}

std::string_view rawText(ArchiveInterval interval) {
  switch (interval) {
    case ArchiveInterval::TwelveHours:
      return "twelveHours";
    case ArchiveInterval::Day:
      return "day";
    case ArchiveInterval::Week:
      return "week";
    case ArchiveInterval::Never:
      return "never";
  }
  return {};
}

std::string_view rawText(QuickBarKey key) {
  switch (key) {
    case QuickBarKey::OptionSpace:
      return "optionSpace";
    case QuickBarKey::ShiftOptionSpace:
      return "shiftOptionSpace";
    case QuickBarKey::ControlShiftSpace:
      return "controlShiftSpace";
  }
  return {};
}

// Of the cases the one with this raw text.
template <class Cases, class Case>
bool decodeCase(Decoder& decoder, Value value, const Cases& cases, Case& target) {
  const auto text = value.text();
  const auto found =
      std::ranges::find_if(cases, [&](const Case& each) { return text == rawText(each); });
  if (found == std::end(cases)) return decoder.fail(value, "a known choice");
  target = *found;
  return true;
}

bool decode(Decoder& decoder, Value value, SearchEngine& target) {
  return decodeCase(decoder, value, SearchEngine::allCases, target);
}
bool decode(Decoder& decoder, Value value, ExternalLinks& target) {
  return decodeCase(decoder, value, kExternalLinks, target);
}
bool decode(Decoder& decoder, Value value, ArchiveInterval& target) {
  return decodeCase(decoder, value, kArchiveIntervals, target);
}
bool decode(Decoder& decoder, Value value, QuickBarKey& target) {
  return decodeCase(decoder, value, kQuickBarKeys, target);
}

}  // namespace

// Found by their arguments' namespace.
[[nodiscard]] static bool decode(Decoder& decoder, Value value, LinkRoute& target) {
  return decoder.field(value, "id", target.id) && decoder.field(value, "pattern", target.pattern) &&
         decoder.field(value, "spaceID", target.spaceID);
}

[[nodiscard]] static bool decode(Decoder& decoder, Value value, SearchShortcut& target) {
  return decoder.field(value, "id", target.id) && decoder.field(value, "keyword", target.keyword) &&
         decoder.field(value, "name", target.name) &&
         decoder.field(value, "template", target.urlTemplate);
}

static void encode(Encoder& encoder, const LinkRoute& route) {
  encoder.beginObject();
  encoder.field("id", route.id);
  encoder.field("pattern", route.pattern);
  encoder.field("spaceID", route.spaceID);
  encoder.endObject();
}

static void encode(Encoder& encoder, const SearchShortcut& shortcut) {
  encoder.beginObject();
  encoder.field("id", shortcut.id);
  encoder.field("keyword", shortcut.keyword);
  encoder.field("name", shortcut.name);
  encoder.field("template", shortcut.urlTemplate);
  encoder.endObject();
}

namespace {

// Leaves `target` as it is unless the whole of the key's value is sound.
template <class T>
void read(Value document, std::string_view key, T& target) {
  const auto value = document.member(key);
  if (!value) return;
  Decoder decoder;
  T found = target;
  if (decode(decoder, *value, found)) target = std::move(found);
}

template <class T>
void read(Value document, std::string_view key, std::optional<T>& target) {
  T found{};
  const auto value = document.member(key);
  if (Decoder decoder; value && decode(decoder, *value, found)) target = std::move(found);
}

}  // namespace

Settings::Snapshot Settings::Snapshot::decode(std::string_view data) {
  Snapshot snapshot;
  const auto document = JSONCoding::Document::parse(data);
  if (!document) return snapshot;
  const Value root = document->root();
  read(root, "searchEngine", snapshot.searchEngine);
  read(root, "externalLinks", snapshot.externalLinks);
  read(root, "linkRoutes", snapshot.linkRoutes);
  read(root, "archiveAfter", snapshot.archiveAfter);
  read(root, "sitePermissions", snapshot.sitePermissions);
  read(root, "siteZoom", snapshot.siteZoom);
  read(root, "autoPictureInPicture", snapshot.autoPictureInPicture);
  read(root, "searchSuggestions", snapshot.searchSuggestions);
  read(root, "searchShortcuts", snapshot.searchShortcuts);
  read(root, "quickBarKey", snapshot.quickBarKey);
  read(root, "hiddenItems", snapshot.hiddenItems);
  return snapshot;
}

std::string Settings::Snapshot::encoded() const {
  Encoder encoder;
  encoder.beginObject();
  encoder.field("archiveAfter", rawText(archiveAfter));
  encoder.field("autoPictureInPicture", autoPictureInPicture);
  encoder.field("externalLinks", rawText(externalLinks));
  encoder.field("hiddenItems", hiddenItems);
  encoder.field("linkRoutes", linkRoutes);
  if (quickBarKey) encoder.field("quickBarKey", rawText(*quickBarKey));
  encoder.field("searchEngine", rawText(searchEngine));
  encoder.field("searchShortcuts", searchShortcuts);
  encoder.field("searchSuggestions", searchSuggestions);
  encoder.field("sitePermissions", sitePermissions);
  encoder.field("siteZoom", siteZoom);
  encoder.endObject();
  return std::move(encoder).finish();
}

}  // namespace orvel
