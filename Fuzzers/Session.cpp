// Two laws of the session file: what decodes is written so that it decodes to the same again, and
// whatever title and address a tab has comes back. The input is taken as a file, and as a title
// and, from its first line end on, an address.

#include "BrowserCore/Session/InternetDate.h"
#include "BrowserCore/Session/SessionRecord.h"
#include "BrowserCore/Text/Text.h"
#include "Fuzzers/Fuzz.h"

using namespace orvel;

namespace {

const Date kNow = *internetDate::parse("2026-01-02T03:04:05Z");

bool comesBack(const SessionRecord& session) {
  const auto decoded = SessionRecord::decode(session.encoded(), kNow);
  return decoded && decoded->record == session && decoded->sourceVersion == 2;
}

}  // namespace

void fuzz(std::string_view input) {
  if (const auto decoded = SessionRecord::decode(input, kNow)) require(comesBack(decoded->record));

  const size_t end = std::min(input.find('\n'), input.size());
  SessionRecord session;
  session.profiles.push_back({.name = text::repairedUTF8(input)});
  session.profiles[0].favorites.push_back(
      {.title = text::repairedUTF8(input.substr(0, end)),
       .url = URL::parse(input.substr(std::min(end + 1, input.size())))});
  require(comesBack(session));
}
