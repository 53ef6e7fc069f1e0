#include "BrowserCore/Answers/Calculator.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <variant>
#include <vector>

#include "BrowserCore/Answers/DecimalNumber.h"
#include "BrowserCore/Text/LetterCase.h"

namespace orvel::Calculator {

namespace {

struct Constant {
  std::string_view name;
  double value;
};

struct Function {
  std::string_view name;
  double (*apply)(double);
};

constexpr Constant constants[] = {
    {"pi", 3.141592653589793},
    {"π", 3.141592653589793},
    {"e", 2.718281828459045},
};

constexpr Function functions[] = {
    {"sqrt", std::sqrt}, {"abs", std::fabs}, {"round", std::round}, {"floor", std::floor},
    {"ceil", std::ceil}, {"ln", std::log},   {"log", std::log10},   {"sin", std::sin},
    {"cos", std::cos},   {"tan", std::tan},
};

// The end of the text, and whatever no calculation has, are no token.
using Token = std::variant<std::monostate, double, const Constant*, const Function*, char>;

Token named(std::string_view name) {
  for (const Constant& constant : constants)
    if (constant.name == name) return &constant;
  for (const Function& function : functions)
    if (function.name == name) return &function;
  return {};
}

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The form of a subtraction, but a date, a telephone number or a reference.
bool looksLikeCode(std::string_view text) {
  std::vector<std::string_view> pieces;
  for (size_t begin = 0; begin <= text.size();) {
    const size_t end = std::min(text.find('-', begin), text.size());
    const std::string_view piece = text.substr(begin, end - begin);
    if (piece.empty() || !std::all_of(piece.begin(), piece.end(), isDigit)) return false;
    pieces.push_back(piece);
    begin = end + 1;
  }
  if (pieces.size() != 2) return pieces.size() > 2;
  for (const std::string_view piece : pieces)
    if (piece.size() > 1 && piece.front() == '0') return true;
  return pieces[0].size() + pieces[1].size() > 6;
}

// The text in lower case with one spelling of each operator and without commas.
std::string rewritten(std::string_view typed) {
  static constexpr std::pair<std::string_view, std::string_view> kSpellings[] = {
      {" of ", " * "}, {"×", "*"}, {"÷", "/"}, {"−", "-"}, {",", ""}};
  const auto canBegin = [](char c) { return c == ' ' || c == ',' || (c & 0x80) != 0; };
  std::string lower = text::lowerCased(typed);
  if (std::none_of(lower.begin(), lower.end(), canBegin)) return lower;
  std::string_view rest = lower;
  std::string result;
  result.reserve(rest.size());
  while (!rest.empty()) {
    const auto plain = std::find_if(rest.begin(), rest.end(), canBegin);
    result.append(rest.begin(), plain);
    rest.remove_prefix(static_cast<size_t>(plain - rest.begin()));
    if (rest.empty()) break;
    const auto spelling =
        std::find_if(std::begin(kSpellings), std::end(kSpellings),
                     [&rest](const auto& pair) { return rest.starts_with(pair.first); });
    const bool isFound = spelling != std::end(kSpellings);
    result += isFound ? spelling->second : rest.substr(0, 1);
    rest.remove_prefix(isFound ? spelling->first.size() : 1);
  }
  return result;
}

// Unicode's classes, with a short way for ASCII.

constexpr auto isNumberPart = [](UChar32 c) {
  if (c < 0x80) return (c >= '0' && c <= '9') || c == '.';
  return u_getIntPropertyValue(c, UCHAR_NUMERIC_TYPE) != U_NT_NONE;
};

constexpr auto isLetter = [](UChar32 c) {
  if (c < 0x80) return c >= 'a' && c <= 'z';
  return u_isUAlphabetic(c) != 0;
};

constexpr auto isSpace = [](UChar32 c) {
  if (c < 0x80) return c == ' ' || (c >= '\t' && c <= '\r');
  return u_isUWhiteSpace(c) != 0;
};

bool isOperator(UChar32 c) {
  switch (c) {
    case '+':
    case '-':
    case '*':
    case '/':
    case '^':
    case '%':
    case '(':
    case ')':
      return true;
    default:
      return false;
  }
}

// Reads one token after the other and keeps count of what makes a calculation.
class Tokenizer {
 public:
  explicit Tokenizer(std::string_view text) : text_(text) {}

  // None at the end, and for what no calculation has.
  Token next() {
    skipRun(isSpace);
    isAtEnd_ = position_ == size();
    if (isAtEnd_) return {};
    ++count_;
    int64_t end = position_;
    const UChar32 first = character(end);
    if (isNumberPart(first)) {
      const auto number = decimalNumber::parse(skipRun(isNumberPart));
      if (!number) return {};
      hasNumber_ = true;
      return *number;
    }
    if (isLetter(first)) {
      const Token token = named(skipRun(isLetter));
      hasOperation_ = hasOperation_ || std::holds_alternative<const Function*>(token);
      return token;
    }
    if (!isOperator(first)) return {};
    position_ = end;
    hasMinus_ = hasMinus_ || first == '-';
    hasOperation_ = hasOperation_ || (first != '-' && first != '(' && first != ')');
    return static_cast<char>(first);
  }

  // The last token asked for was behind the last of the text.
  bool isAtEnd() const { return isAtEnd_; }

  // Tells the tokens read so far from a lone number or name.
  bool isMath() const { return hasNumber_ && (hasOperation_ || (hasMinus_ && count_ > 2)); }

 private:
  int64_t size() const { return static_cast<int64_t>(text_.size()); }

  UChar32 character(int64_t& position) const {
    const auto byte = static_cast<uint8_t>(text_[static_cast<size_t>(position)]);
    if (!U8_IS_SINGLE(byte)) return longCharacter(position);
    ++position;
    return byte;
  }

  [[gnu::noinline]] UChar32 longCharacter(int64_t& position) const {
    UChar32 c = 0;
    U8_NEXT(text_.data(), position, size(), c);
    return c;
  }

  template <typename Belongs>
  std::string_view skipRun(Belongs belongs) {
    const int64_t begin = position_;
    for (int64_t next = begin; next < size() && belongs(character(next));) position_ = next;
    return text_.substr(static_cast<size_t>(begin), static_cast<size_t>(position_ - begin));
  }

  std::string_view text_;
  int64_t position_ = 0;
  size_t count_ = 0;
  bool isAtEnd_ = false;
  bool hasNumber_ = false;
  bool hasOperation_ = false;  // a function, or an operator that can't be a sign
  bool hasMinus_ = false;
};

// The grammar, which is read without recursion: what waits for a value still to come lies on a
// stack, and each rule's operation finishes what that rule left there.
//
//   expression = term { ("+" | "-") term }
//   term       = unary { ("*" | "/") unary }
//   unary      = ("-" | "+") unary | power
//   power      = primary { "%" } [ "^" unary ]
//   primary    = number | constant | function primary | "(" expression ")"
class Parser {
 public:
  explicit Parser(std::string_view text) : tokenizer_(text) {
    pending_.reserve(8);
    advance();
  }

  // The value of the whole text.
  std::optional<double> parse() {
    while (parsePrimary()) {
      if (parsePower()) continue;
      parseUnary();
      if (parseTerm()) continue;
      if (parseExpression()) continue;
      const bool isWhole = pending_.empty() && tokenizer_.isAtEnd();
      return isWhole && tokenizer_.isMath() ? std::optional(value_) : std::nullopt;
    }
    return std::nullopt;
  }

 private:
  enum class Kind { Add, Subtract, Multiply, Divide, Raise, Negate, Apply, Open };
  struct Pending {
    Kind kind;
    double left = 0;
    const Function* function = nullptr;
  };

  // Leaves in `value_` the next number or constant, with what stands before it put on the stack, or
  // the value of the parentheses just closed; applies the functions that were waiting for it.
  bool parsePrimary() {
    while (!isClosed_) {
      const Token token = token_;
      const char symbol = symbol_;
      advance();
      if (const double* number = std::get_if<double>(&token)) {
        value_ = *number;
        break;
      }
      if (const auto* constant = std::get_if<const Constant*>(&token)) {
        value_ = (*constant)->value;
        break;
      }
      if (const auto* function = std::get_if<const Function*>(&token))
        pending_.push_back({Kind::Apply, 0, *function});
      else if (symbol == '(')
        pending_.push_back({Kind::Open});
      else if (isWaiting(Kind::Apply))
        return false;
      else if (symbol == '-')
        pending_.push_back({Kind::Negate});
      else if (symbol != '+')
        return false;
    }
    isClosed_ = false;
    for (; isWaiting(Kind::Apply); pending_.pop_back())
      value_ = pending_.back().function->apply(value_);
    return true;
  }

  // Each of the following that answers, returns whether another value has to follow.

  bool parsePower() {
    while (skip('%')) value_ /= 100;
    return symbol_ == '^' && await(Kind::Raise);
  }

  void parseUnary() {
    for (; isWaiting(Kind::Raise) || isWaiting(Kind::Negate); pending_.pop_back())
      value_ = isWaiting(Kind::Raise) ? std::pow(pending_.back().left, value_) : -value_;
  }

  bool parseTerm() {
    if (isWaiting(Kind::Multiply) || isWaiting(Kind::Divide)) {
      const Pending pending = pop();
      value_ = pending.kind == Kind::Multiply ? pending.left * value_ : pending.left / value_;
    }
    return (symbol_ == '*' && await(Kind::Multiply)) || (symbol_ == '/' && await(Kind::Divide));
  }

  bool parseExpression() {
    if (isWaiting(Kind::Add) || isWaiting(Kind::Subtract)) {
      const Pending pending = pop();
      value_ = pending.kind == Kind::Add ? pending.left + value_ : pending.left - value_;
    }
    if ((symbol_ == '+' && await(Kind::Add)) || (symbol_ == '-' && await(Kind::Subtract)))
      return true;
    if (!isWaiting(Kind::Open) || !skip(')')) return false;
    pending_.pop_back();
    isClosed_ = true;
    return true;
  }

  bool isWaiting(Kind kind) const { return !pending_.empty() && pending_.back().kind == kind; }

  void advance() {
    token_ = tokenizer_.next();
    const char* symbol = std::get_if<char>(&token_);
    symbol_ = symbol ? *symbol : '\0';
  }

  bool skip(char symbol) {
    if (symbol_ != symbol) return false;
    advance();
    return true;
  }

  // Puts the value and the operator behind it on the stack. Always true.
  bool await(Kind kind) {
    pending_.push_back({kind, value_});
    advance();
    return true;
  }

  Pending pop() {
    const Pending pending = pending_.back();
    pending_.pop_back();
    return pending;
  }

  Tokenizer tokenizer_;
  Token token_;         // the next one
  char symbol_ = '\0';  // the same, if it is a symbol
  std::vector<Pending> pending_;
  double value_ = 0;
  bool isClosed_ = false;  // `value_` is that of the parentheses just closed
};

}  // namespace

std::optional<double> evaluate(std::string_view text) {
  if (looksLikeCode(text)) return std::nullopt;
  const std::string rewrittenText = rewritten(text);
  const auto value = Parser(rewrittenText).parse();
  return value && std::isfinite(*value) ? value : std::nullopt;
}

}  // namespace orvel::Calculator
