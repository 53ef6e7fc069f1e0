#include "Models/CommandBar/ChoicesFile.h"

#include <map>

#include "BrowserCore/DateSeconds.h"
#include "BrowserCore/Session/JSONDecoder.h"
#include "BrowserCore/Session/JSONEncoder.h"

namespace orvel {

using JSONCoding::Decoder;
using JSONCoding::Encoder;
using JSONCoding::Value;

namespace {

using namespace std::chrono_literals;

// Times are seconds from here on.
constexpr Date kOrigin = std::chrono::sys_days(2001y / 1 / 1);

struct Prefix {
  std::string text;
  std::vector<ChoiceMemory::Choice> choices;
};

struct Memory {
  UUID profile;
  std::vector<Prefix> prefixes;
};

bool decode(Decoder& decoder, Value value, ChoiceMemory::Choice& choice) {
  double lastUsed = 0;
  if (!decoder.field(value, "count", choice.count) || !decoder.field(value, "key", choice.key) ||
      !decoder.field(value, "lastUsed", lastUsed))
    return false;
  choice.lastUsed = date_seconds::after(kOrigin, lastUsed);
  return true;
}

bool decode(Decoder& decoder, Value value, Prefix& prefix) {
  if (!decoder.field(value, "prefix", prefix.text)) return false;
  const auto choices = value.member("choices");
  if (!choices || !choices->isList()) return decoder.failMissing(value, "choices");
  for (const Value choice : *choices)
    if (!decode(decoder, choice, prefix.choices.emplace_back())) return false;
  if (prefix.choices.size() > ChoiceMemory::kChoicesPerPrefix)
    prefix.choices.resize(ChoiceMemory::kChoicesPerPrefix);
  return true;
}

bool decode(Decoder& decoder, Value value, Memory& memory) {
  if (!decoder.field(value, "profile", memory.profile)) return false;
  const auto prefixes = value.member("prefixes");
  if (!prefixes || !prefixes->isList()) return decoder.failMissing(value, "prefixes");
  for (const Value prefix : *prefixes)
    if (!decode(decoder, prefix, memory.prefixes.emplace_back())) return false;
  return true;
}

void encode(Encoder& encoder, const ChoiceMemory& memory) {
  // Files of equal contents are equal.
  const std::map<std::string, std::vector<ChoiceMemory::Choice>> sorted(memory.choices.begin(),
                                                                        memory.choices.end());
  encoder.beginList();
  for (const auto& [prefix, choices] : sorted) {
    encoder.beginObject();
    encoder.key("choices");
    encoder.beginList();
    for (const ChoiceMemory::Choice& choice : choices) {
      encoder.beginObject();
      encoder.field("count", choice.count);
      encoder.field("key", choice.key);
      encoder.field("lastUsed", date_seconds::since(kOrigin, choice.lastUsed));
      encoder.endObject();
    }
    encoder.endList();
    encoder.field("prefix", prefix);
    encoder.endObject();
  }
  encoder.endList();
}

}  // namespace

std::string ChoicesFile::encoded(const Choices& choices) {
  const std::map<UUID, ChoiceMemory> sorted(choices.begin(), choices.end());
  Encoder encoder;
  encoder.beginList();
  for (const auto& [profile, memory] : sorted) {
    encoder.beginObject();
    encoder.key("prefixes");
    encode(encoder, memory);
    encoder.field("profile", profile);
    encoder.endObject();
  }
  encoder.endList();
  return std::move(encoder).finish();
}

std::optional<ChoicesFile::Choices> ChoicesFile::decode(std::string_view data) {
  const auto document = JSONCoding::Document::parse(data);
  if (!document || !document->root().isList()) return std::nullopt;
  Decoder decoder;
  Choices choices;
  for (const Value entry : document->root()) {
    Memory memory;
    if (!orvel::decode(decoder, entry, memory)) return std::nullopt;
    auto& table = choices[memory.profile].choices;
    for (Prefix& prefix : memory.prefixes) table[prefix.text] = std::move(prefix.choices);
  }
  return choices;
}

}  // namespace orvel
