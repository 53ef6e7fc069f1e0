#pragma once

#include <concepts>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "BrowserCore/Addresses/URL.h"
#include "BrowserCore/Date.h"
#include "BrowserCore/UUID.h"

// How the program's JSON files are written and read: keys in alphabetical order, dates as internet
// dates, UUIDs in upper case, addresses as their text, absent values left out.
//
// A type takes part by two functions next to it, `void encode(Encoder&, const T&)` and
// `bool decode(Decoder&, Value, T&)`.
namespace orvel::JSONCoding {

// Writes one indented JSON text straight into a buffer. It always succeeds: ill-formed UTF-8
// becomes U+FFFD, and a number that isn't finite 0 (who has a better default puts it in before).
class Encoder {
 public:
  void beginObject() { begin('{'); }
  void endObject() { end('}'); }
  void beginList() { begin('['); }
  void endList() { end(']'); }

  // What is written next is the value of `key`. Keys come in ascending order and are well-formed.
  void key(std::string_view key);

  // A whole member of an object; nothing when the value is absent.
  template <typename T>
  void field(std::string_view name, const T& value) {
    key(name);
    encode(*this, value);
  }
  template <typename T>
  void field(std::string_view name, const std::optional<T>& value) {
    if (value) field(name, *value);
  }

  void text(std::string_view value);
  void number(double value);
  void integer(int64_t value);
  void boolean(bool value);

  // The finished text, ending with a line end. The encoder is spent.
  [[nodiscard]] std::string finish() &&;

 private:
  void begin(char bracket);
  void end(char bracket);
  void separate();
  void breakLine();

  std::string buffer_;
  size_t depth_ = 0;
  bool isFirst_ = true;
  bool isAfterKey_ = false;
};

inline void encode(Encoder& encoder, std::string_view value) { encoder.text(value); }
inline void encode(Encoder& encoder, std::same_as<double> auto value) { encoder.number(value); }
inline void encode(Encoder& encoder, std::same_as<int64_t> auto value) { encoder.integer(value); }
inline void encode(Encoder& encoder, std::same_as<bool> auto value) { encoder.boolean(value); }
inline void encode(Encoder& encoder, const URL& value) { encoder.text(value.text()); }
inline void encode(Encoder& encoder, const UUID& value) { encoder.text(value.text()); }
void encode(Encoder& encoder, Date value);

template <typename T>
void encode(Encoder& encoder, const std::vector<T>& list) {
  encoder.beginList();
  for (const T& element : list) encode(encoder, element);
  encoder.endList();
}

template <typename T>
void encode(Encoder& encoder, const std::map<std::string, T>& members) {
  encoder.beginObject();
  for (const auto& [key, value] : members) encoder.field(key, value);
  encoder.endObject();
}

}  // namespace orvel::JSONCoding
