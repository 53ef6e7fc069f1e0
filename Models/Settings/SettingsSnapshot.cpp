#include <algorithm>
#include <utility>

#include "BrowserCore/Session/JSONDecoder.h"
#include "BrowserCore/Session/JSONEncoder.h"
#include "Models/Settings/Settings.h"

// How each type of setting is read and written. The document has no version.
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

}  // namespace

// Found by their arguments' namespace.
[[nodiscard]] static bool decode(Decoder& decoder, Value value, SearchEngine& target) {
  return decodeCase(decoder, value, SearchEngine::allCases, target);
}
[[nodiscard]] static bool decode(Decoder& decoder, Value value, ExternalLinks& target) {
  return decodeCase(decoder, value, kExternalLinks, target);
}
[[nodiscard]] static bool decode(Decoder& decoder, Value value, ArchiveInterval& target) {
  return decodeCase(decoder, value, kArchiveIntervals, target);
}
[[nodiscard]] static bool decode(Decoder& decoder, Value value, QuickBarKey& target) {
  return decodeCase(decoder, value, kQuickBarKeys, target);
}

static void encode(Encoder& encoder, SearchEngine value) { encoder.text(rawText(value)); }
static void encode(Encoder& encoder, ExternalLinks value) { encoder.text(rawText(value)); }
static void encode(Encoder& encoder, ArchiveInterval value) { encoder.text(rawText(value)); }
static void encode(Encoder& encoder, QuickBarKey value) { encoder.text(rawText(value)); }

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

template <class T>
static bool decodeWhole(Decoder& decoder, Value value, T& target) {
  return decode(decoder, value, target);
}

template <class T>
static bool decodeWhole(Decoder& decoder, Value value, std::optional<T>& target) {
  return decode(decoder, value, target.emplace());
}

template <class T>
void Setting<T>::read(Value value) {
  Decoder decoder;
  T found = peek();
  if (decodeWhole(decoder, value, found)) Observable<T>::set(std::move(found));
}

template <class T>
void Setting<T>::write(std::string_view key, Encoder& encoder) const {
  if (!details_.leavesOutDefault || peek() != initial_) encoder.field(key, peek());
}

template class Setting<bool>;
template class Setting<SearchEngine>;
template class Setting<ExternalLinks>;
template class Setting<ArchiveInterval>;
template class Setting<std::optional<QuickBarKey>>;
template class Setting<std::vector<LinkRoute>>;
template class Setting<std::vector<SearchShortcut>>;
template class Setting<Settings::SitePermissions>;
template class Setting<Settings::SiteZoom>;
template class Setting<Settings::HiddenItems>;

void SettingsSnapshot::decode(std::string_view data) {
  const auto document = JSONCoding::Document::parse(data);
  if (!document) return;
  for (const auto& [key, setting] : settings_)
    if (const auto value = document->root().member(key)) setting->read(*value);
}

std::string SettingsSnapshot::encoded() const {
  Encoder encoder;
  encoder.beginObject();
  for (const auto& [key, setting] : settings_) setting->write(key, encoder);
  encoder.endObject();
  return std::move(encoder).finish();
}

}  // namespace orvel
