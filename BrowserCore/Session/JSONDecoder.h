#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "BrowserCore/Addresses/URL.h"
#include "BrowserCore/Date.h"
#include "BrowserCore/Result.h"
#include "BrowserCore/UUID.h"

namespace orvel::JSONCoding {

// Why a text could not be decoded: a sentence for the log that names the place and holds nothing of
// the contents.
struct DecodingError {
  std::string description;
};

class Value;

// A parsed JSON text: one flat list of nodes, so that no depth of nesting costs stack, neither
// while reading nor at the end.
class Document {
 public:
  // Lists and objects inside one another. Enough for 20,000 folders, each of which takes three
  // levels in a session file.
  static constexpr size_t kMaxLevels = 60'100;

  // Strict JSON in UTF-8 (RFC 8259), a byte order mark allowed. An error for anything else, for an
  // escape of half a surrogate pair, a number beyond the range of a double, and deeper nesting than
  // `kMaxLevels`.
  [[nodiscard]] static Result<Document, DecodingError> parse(std::string_view data);

  // Valid as long as the document stays where it is.
  Value root() const;

 private:
  friend class Value;
  friend class Decoder;
  class Builder;

  enum class Kind : uint8_t { Null, False, True, Integer, Number, Text, List, Object };
  struct Span {
    uint32_t begin;
    uint32_t size;
  };
  // An object's members follow it as pairs of a text and a value, a list's elements one by one.
  struct Node {
    Kind kind;
    uint32_t end;  // of the node and all below it, as an index into `nodes_`
    union {
      int64_t integer;
      double number;
      Span span;  // of a text, in `texts_`
    };
  };

  std::string path(uint32_t node) const;
  std::string_view textOf(const Node& node) const;

  std::vector<Node> nodes_;
  std::string texts_;
};

// One value of a document: a pair of pointer and index, passed by value.
class Value {
 public:
  bool isNull() const { return node().kind == Document::Kind::Null; }
  bool isList() const { return node().kind == Document::Kind::List; }
  bool isObject() const { return node().kind == Document::Kind::Object; }
  std::optional<bool> boolean() const;
  // Any number.
  std::optional<double> number() const;
  // A number without a fraction, also when written like "2.0", in the range of the result.
  std::optional<int64_t> integer() const;
  std::optional<std::string_view> text() const;

  // The value of an object's `key`; of several the last. Absent also when this is no object.
  std::optional<Value> member(std::string_view key) const;

  // The members of an object in its order; none when this is no object.
  std::vector<std::pair<std::string_view, Value>> members() const;

  // The elements of a list; none when this is no list.
  class Iterator;
  Iterator begin() const;
  Iterator end() const;

 private:
  friend class Document;
  friend class Decoder;
  Value(const Document& document, uint32_t index) : document_(&document), index_(index) {}
  const Document::Node& node() const { return document_->nodes_[index_]; }

  const Document* document_;
  uint32_t index_;
};

class Value::Iterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = Value;
  using difference_type = std::ptrdiff_t;
  using pointer = const Value*;
  using reference = Value;

  explicit Iterator(Value value) : value_(value) {}
  Value operator*() const { return value_; }
  Iterator& operator++() {
    value_.index_ = value_.node().end;
    return *this;
  }
  bool operator==(const Iterator& other) const { return value_.index_ == other.value_.index_; }

 private:
  Value value_;
};

// Fills program values from JSON values and remembers the first failure. Every operation answers
// whether it succeeded; what a failed one leaves in its target means nothing.
class Decoder {
 public:
  // A required member: missing and null fail.
  template <typename T>
  [[nodiscard]] bool field(Value object, std::string_view key, T& target) {
    const auto value = object.member(key);
    if (!value) return failMissing(object, key);
    return decode(*this, *value, target);
  }
  // An optional member: missing and null give no value, anything else must decode.
  template <typename T>
  [[nodiscard]] bool field(Value object, std::string_view key, std::optional<T>& target) {
    target.reset();
    const auto value = object.member(key);
    return !value || value->isNull() || decode(*this, *value, target.emplace());
  }
  // An address without a scheme leads nowhere and gives none.
  [[nodiscard]] bool field(Value object, std::string_view key, std::optional<URL>& target);

  // Both answer false.
  bool fail(Value value, std::string_view expected);
  bool failMissing(Value object, std::string_view key);

  DecodingError error() const { return {failure_}; }

 private:
  std::string failure_;
};

[[nodiscard]] bool decode(Decoder& decoder, Value value, bool& target);
[[nodiscard]] bool decode(Decoder& decoder, Value value, double& target);
[[nodiscard]] bool decode(Decoder& decoder, Value value, int64_t& target);
[[nodiscard]] bool decode(Decoder& decoder, Value value, std::string& target);
[[nodiscard]] bool decode(Decoder& decoder, Value value, UUID& target);
[[nodiscard]] bool decode(Decoder& decoder, Value value, Date& target);

template <typename T>
[[nodiscard]] bool decode(Decoder& decoder, Value value, std::vector<T>& target) {
  if (!value.isList()) return decoder.fail(value, "a list");
  target.clear();
  for (const Value element : value)
    if (!decode(decoder, element, target.emplace_back())) return false;
  return true;
}

// An object with any keys; of several equal ones the last counts.
template <typename T>
[[nodiscard]] bool decode(Decoder& decoder, Value value, std::map<std::string, T>& target) {
  if (!value.isObject()) return decoder.fail(value, "an object");
  target.clear();
  for (const auto& [key, member] : value.members()) {
    T found{};
    if (!decode(decoder, member, found)) return false;
    target.insert_or_assign(std::string(key), std::move(found));
  }
  return true;
}

}  // namespace orvel::JSONCoding
