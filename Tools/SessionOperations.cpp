#include "BrowserCore/Session/InternetDate.h"
#include "BrowserCore/Session/SessionRecord.h"
#include "Tools/Operations.h"

namespace orvel::tools {

namespace {

using nlohmann::json;

// Without the layout: inside of a JSON text's texts line ends are escaped.
std::string singleLine(std::string_view indented) {
  std::string result;
  while (!indented.empty()) {
    const size_t end = std::min(indented.find('\n'), indented.size());
    result += indented.substr(0, end);
    indented.remove_prefix(std::min(indented.find_first_not_of("\n ", end), indented.size()));
  }
  return result;
}

Answer sessionDecode(const json& request) {
  const auto& text = request.at("json").get_ref<const std::string&>();
  const auto now = internetDate::parse(request.at("now").get_ref<const std::string&>());
  if (!now) return json{{"error", "badRequest"}};

  const auto decoded = SessionRecord::decode(text, *now);
  if (!decoded) {
    const auto* error = std::get_if<SessionError>(&decoded.error());
    return error ? json{{"error", "unsupportedVersion"}, {"version", error->unsupportedVersion}}
                 : json{{"error", "undecodable"}};
  }

  JSONCoding::Encoder encoder;
  encoder.beginObject();
  encoder.field("record", decoded->record);
  encoder.field("sourceVersion", decoded->sourceVersion);
  encoder.endObject();
  return Line{singleLine(std::move(encoder).finish())};
}

}  // namespace

void addSessionOperations(Operations& operations) { operations["sessionDecode"] = sessionDecode; }

}  // namespace orvel::tools
