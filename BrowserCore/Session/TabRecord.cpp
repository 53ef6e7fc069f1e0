#include "BrowserCore/Session/TabRecord.h"

namespace orvel {

URL boundedAddress(const URL& address) {
  constexpr size_t kLongest = 2u << 20;
  if (address.text().size() <= kLongest) return address;
  std::string origin(address.scheme());
  origin += ":";
  if (const auto authority = address.authority(); authority && authority->size() < kLongest)
    origin.append("//").append(*authority).append("/");
  // A scheme of such a length is no address's.
  return URL::parse(origin.size() <= kLongest ? origin : "about:blank").value_or(address);
}

void encode(JSONCoding::Encoder& encoder, const TabRecord& tab) {
  encoder.beginObject();
  encoder.field("id", tab.id);
  encoder.field("lastActiveAt", tab.lastActiveAt);
  encoder.field("pinnedURL", tab.pinnedURL);
  encoder.field("title", tab.title);
  encoder.field("url", tab.url);
  encoder.endObject();
}

bool decode(JSONCoding::Decoder& decoder, JSONCoding::Value value, TabRecord& tab) {
  return decoder.field(value, "id", tab.id) && decoder.field(value, "title", tab.title) &&
         decoder.field(value, "url", tab.url) && decoder.field(value, "pinnedURL", tab.pinnedURL) &&
         decoder.field(value, "lastActiveAt", tab.lastActiveAt);
}

void encode(JSONCoding::Encoder& encoder, const ArchivedTabRecord& record) {
  encoder.beginObject();
  encoder.field("archivedAt", record.archivedAt);
  encoder.field("spaceID", record.spaceID);
  encoder.field("tab", record.tab);
  encoder.endObject();
}

bool decode(JSONCoding::Decoder& decoder, JSONCoding::Value value, ArchivedTabRecord& record) {
  return decoder.field(value, "tab", record.tab) &&
         decoder.field(value, "spaceID", record.spaceID) &&
         decoder.field(value, "archivedAt", record.archivedAt);
}

std::string ArchivedTabRecord::encoded(const std::vector<ArchivedTabRecord>& archive) {
  JSONCoding::Encoder encoder;
  encode(encoder, archive);
  return std::move(encoder).finish();
}

std::optional<std::vector<ArchivedTabRecord>> ArchivedTabRecord::decode(std::string_view data) {
  const auto document = JSONCoding::Document::parse(data);
  if (!document) return std::nullopt;
  JSONCoding::Decoder decoder;
  std::vector<ArchivedTabRecord> archive;
  if (!JSONCoding::decode(decoder, document->root(), archive)) return std::nullopt;
  return archive;
}

}  // namespace orvel
