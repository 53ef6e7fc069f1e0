// Two laws of the session file: what decodes is written so that it decodes to the same again, and
// whatever title and address a tab has comes back. The input is taken as a file, and as a title
// and, from its first line end on, an address.

#include <cstdlib>

#include "BrowserCore/Session/InternetDate.h"
#include "BrowserCore/Session/SessionRecord.h"
#include "BrowserCore/Text.h"

namespace {

using orvel::SessionRecord;

const orvel::Date kNow = *orvel::internetDate::parse("2026-01-02T03:04:05Z");

void require(bool condition) {
  if (!condition) std::abort();
}

bool comesBack(const SessionRecord& session) {
  const auto result = SessionRecord::decode(session.encoded(), kNow);
  const auto* decoded = std::get_if<SessionRecord::Decoded>(&result);
  return decoded && decoded->record == session && decoded->sourceVersion == 2;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const auto result = SessionRecord::decode(input, kNow);
  if (const auto* decoded = std::get_if<SessionRecord::Decoded>(&result))
    require(comesBack(decoded->record));

  const size_t end = std::min(input.find('\n'), input.size());
  SessionRecord session;
  session.profiles.push_back({.name = orvel::text::repairedUTF8(input)});
  session.profiles[0].favorites.push_back(
      {.title = orvel::text::repairedUTF8(input.substr(0, end)),
       .url = orvel::URL::parse(input.substr(std::min(end + 1, input.size())))});
  require(comesBack(session));
  return 0;
}
