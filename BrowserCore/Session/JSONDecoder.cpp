#include "BrowserCore/Session/JSONDecoder.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "BrowserCore/Session/InternetDate.h"

namespace orvel::JSONCoding {

// Receives the library's parse events. A handler that answers false ends the parse.
class Document::Builder {
 public:
  using string_t = nlohmann::json::string_t;
  using binary_t = nlohmann::json::binary_t;

  explicit Builder(Document& document) : document_(document) {}
  const std::string& error() const { return error_; }

  bool null() { return add(Kind::Null); }
  bool boolean(bool value) { return add(value ? Kind::True : Kind::False); }
  bool number_integer(int64_t value) {
    add(Kind::Integer);
    document_.nodes_.back().integer = value;
    return true;
  }
  bool number_unsigned(uint64_t value) {
    if (value > static_cast<uint64_t>(std::numeric_limits<int64_t>::max()))
      return addNumber(static_cast<double>(value));
    return number_integer(static_cast<int64_t>(value));
  }
  bool number_float(double value, const string_t&) { return addNumber(value); }
  bool string(string_t& value) { return addText(value); }
  bool key(string_t& value) { return addText(value); }
  bool binary(binary_t&) { return false; }
  bool start_object(size_t) { return open(Kind::Object); }
  bool end_object() { return close(); }
  bool start_array(size_t) { return open(Kind::List); }
  bool end_array() { return close(); }

  bool parse_error(size_t position, const std::string&, const nlohmann::json::exception&) {
    error_ = fmt::format("it is no JSON from byte {} on", position);
    return false;
  }

 private:
  bool add(Kind kind) {
    const auto index = static_cast<uint32_t>(document_.nodes_.size());
    document_.nodes_.push_back({kind, index + 1, {}});
    return true;
  }

  bool addNumber(double value) {
    add(Kind::Number);
    document_.nodes_.back().number = value;
    return true;
  }

  bool addText(std::string_view text) {
    add(Kind::Text);
    document_.nodes_.back().span = {static_cast<uint32_t>(document_.texts_.size()),
                                    static_cast<uint32_t>(text.size())};
    document_.texts_ += text;
    return true;
  }

  bool open(Kind kind) {
    if (open_.size() == kMaxLevels) {
      error_ = fmt::format("it nests deeper than {} levels", kMaxLevels);
      return false;
    }
    open_.push_back(static_cast<uint32_t>(document_.nodes_.size()));
    return add(kind);
  }

  bool close() {
    document_.nodes_[open_.back()].end = static_cast<uint32_t>(document_.nodes_.size());
    open_.pop_back();
    return true;
  }

  Document& document_;
  std::vector<uint32_t> open_;
  std::string error_;
};

Result<Document, DecodingError> Document::parse(std::string_view data) {
  if (data.size() >= std::numeric_limits<uint32_t>::max())
    return Failure(DecodingError{"it is too long"});
  Document document;
  Builder builder(document);
  if (!nlohmann::json::sax_parse(data.begin(), data.end(), &builder))
    return Failure(DecodingError{builder.error()});
  return document;
}

Value Document::root() const { return {*this, 0}; }

std::string_view Document::textOf(const Node& node) const {
  return std::string_view(texts_).substr(node.span.begin, node.span.size);
}

std::string Document::path(uint32_t target) const {
  std::vector<std::string> steps;
  uint32_t index = 0;
  while (index != target) {
    const bool isObject = nodes_[index].kind == Kind::Object;
    size_t position = 0;
    std::string_view key;
    for (++index;; index = nodes_[index].end, ++position) {
      if (isObject) key = textOf(nodes_[index++]);
      if (target < nodes_[index].end) break;
    }
    steps.push_back(isObject ? fmt::format(".{}", key) : fmt::format("[{}]", position));
  }
  if (steps.empty()) return "it";
  constexpr ptrdiff_t kMaxSteps = 12;
  if (std::ssize(steps) > kMaxSteps) {
    steps.erase(steps.begin(), steps.end() - kMaxSteps);
    steps.insert(steps.begin(), "…");
  }
  const std::string path = fmt::format("{}", fmt::join(steps, ""));
  return path.starts_with('.') ? path.substr(1) : path;
}

std::optional<bool> Value::boolean() const {
  if (node().kind == Document::Kind::True) return true;
  if (node().kind == Document::Kind::False) return false;
  return std::nullopt;
}

std::optional<double> Value::number() const {
  if (node().kind == Document::Kind::Number) return node().number;
  if (node().kind == Document::Kind::Integer) return static_cast<double>(node().integer);
  return std::nullopt;
}

std::optional<int64_t> Value::integer() const {
  if (node().kind == Document::Kind::Integer) return node().integer;
  if (node().kind != Document::Kind::Number) return std::nullopt;
  constexpr double kLimit = 9223372036854775808.0;  // 2^63, the first that doesn't fit
  const double value = node().number;
  if (value != std::trunc(value) || value < -kLimit || value >= kLimit) return std::nullopt;
  return static_cast<int64_t>(value);
}

std::optional<std::string_view> Value::text() const {
  if (node().kind != Document::Kind::Text) return std::nullopt;
  return document_->textOf(node());
}

std::optional<Value> Value::member(std::string_view key) const {
  std::optional<Value> found;
  if (!isObject()) return found;
  for (uint32_t i = index_ + 1; i < node().end; i = document_->nodes_[i + 1].end)
    if (document_->textOf(document_->nodes_[i]) == key) found = Value(*document_, i + 1);
  return found;
}

std::vector<std::pair<std::string_view, Value>> Value::members() const {
  std::vector<std::pair<std::string_view, Value>> found;
  if (!isObject()) return found;
  for (uint32_t i = index_ + 1; i < node().end; i = document_->nodes_[i + 1].end)
    found.emplace_back(document_->textOf(document_->nodes_[i]), Value(*document_, i + 1));
  return found;
}

Value::Iterator Value::begin() const {
  return Iterator({*document_, isList() ? index_ + 1 : node().end});
}

Value::Iterator Value::end() const { return Iterator({*document_, node().end}); }

bool Decoder::fail(Value value, std::string_view expected) {
  if (failure_.empty())
    failure_ = fmt::format("{} is not {}", value.document_->path(value.index_), expected);
  return false;
}

bool Decoder::failMissing(Value object, std::string_view key) {
  if (!object.isObject()) return fail(object, "an object");
  if (failure_.empty())
    failure_ = fmt::format("{} has no {}", object.document_->path(object.index_), key);
  return false;
}

namespace {

bool lacksOnlyItsScheme(std::string_view text) {
  return !text.empty() && URL::parse("scheme:" + std::string(text));
}

}  // namespace

bool Decoder::field(Value object, std::string_view key, std::optional<URL>& target) {
  target.reset();
  const auto value = object.member(key);
  if (!value || value->isNull()) return true;
  const auto text = value->text();
  if (text) target = URL::parse(*text);
  return target || (text && lacksOnlyItsScheme(*text)) || fail(*value, "an address");
}

namespace {

// Takes over what a conversion found, or fails.
template <typename T, typename Found>
bool take(Decoder& decoder, Value value, const std::optional<Found>& found,
          std::string_view expected, T& target) {
  if (!found) return decoder.fail(value, expected);
  target = *found;
  return true;
}

}  // namespace

bool decode(Decoder& decoder, Value value, bool& target) {
  return take(decoder, value, value.boolean(), "true or false", target);
}

bool decode(Decoder& decoder, Value value, double& target) {
  return take(decoder, value, value.number(), "a number", target);
}

bool decode(Decoder& decoder, Value value, int64_t& target) {
  return take(decoder, value, value.integer(), "an integer", target);
}

bool decode(Decoder& decoder, Value value, std::string& target) {
  return take(decoder, value, value.text(), "a text", target);
}

bool decode(Decoder& decoder, Value value, UUID& target) {
  const auto text = value.text();
  return take(decoder, value, text ? UUID::parse(*text) : std::nullopt, "a UUID", target);
}

bool decode(Decoder& decoder, Value value, Date& target) {
  const auto text = value.text();
  return take(decoder, value, text ? internetDate::parse(*text) : std::nullopt,
              "a date in whole seconds", target);
}

}  // namespace orvel::JSONCoding
