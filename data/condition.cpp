// SPDX-License-Identifier: MIT
#include "data/condition.h"

#include <array>
#include <optional>
#include <utility>

#include "data/plain_text.h"
#include "data/utf16.h"

namespace discoplan::data {
namespace {

enum class Order { Less, LessOrEqual, Greater, GreaterOrEqual, Equal, Unequal };

struct OrderMark {
  std::string_view mark;
  Order order;
};
// The longer ones first.
constexpr OrderMark kOrderMarks[] = {{"<=", Order::LessOrEqual}, {">=", Order::GreaterOrEqual},
                                     {"==", Order::Equal},       {"!=", Order::Unequal},
                                     {"<>", Order::Unequal},     {"<", Order::Less},
                                     {">", Order::Greater},      {"=", Order::Equal}};

bool Compare(double a, double b, Order order) {
  switch (order) {
    case Order::Less:
      return a < b;
    case Order::LessOrEqual:
      return a <= b;
    case Order::Greater:
      return a > b;
    case Order::GreaterOrEqual:
      return a >= b;
    case Order::Equal:
      return a == b;
    default:
      return a != b;
  }
}

struct Operand {
  enum class Kind { Column, Number, Text };
  Kind kind = Kind::Number;
  std::size_t column = 0;
  double number = 0;
  std::string text;
};

enum class Join { Comparison, And, Or, Not };

constexpr int kDeepest = 100;

bool IsWordByte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || c == '_' || c == '.' || c == '#' || c == '%' || (c >= '0' && c <= '9') ||
         (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace

struct Condition::Term {
  Join join = Join::Comparison;
  Operand left, right;
  Order order = Order::Equal;
  std::unique_ptr<const Term> first, second;
};

namespace {

using Term = Condition::Term;
using TermPointer = std::unique_ptr<const Term>;

class Parser {
 public:
  Parser(std::string_view text, const TableHead& head) : text_(text), head_(head) {}

  TermPointer Parse() {
    TermPointer term = ParseOr();
    SkipBlanks();
    if (at_ < text_.size()) Refuse("'and', 'or' or the end is due");
    return term;
  }

 private:
  TermPointer ParseOr() {
    TermPointer term = ParseAnd();
    while (TakeWord("or")) term = Joined(Join::Or, std::move(term), ParseAnd());
    return term;
  }
  TermPointer ParseAnd() {
    TermPointer term = ParseNot();
    while (TakeWord("and")) term = Joined(Join::And, std::move(term), ParseNot());
    return term;
  }
  TermPointer ParseNot() {
    if (++depth_ > kDeepest)
      Refuse("the condition is nested too deeply; write it with less of that");
    TermPointer term;
    if (TakeWord("not")) {
      term = Joined(Join::Not, ParseNot(), nullptr);
    } else if (TakeMark("(")) {
      term = ParseOr();
      if (!TakeMark(")")) Refuse("a closing parenthesis is due");
    } else {
      term = ParseComparison();
    }
    --depth_;
    return term;
  }

  TermPointer ParseComparison() {
    auto term = std::make_unique<Term>();
    const std::size_t start = at_;
    term->left = ParseOperand();
    term->order = ParseOrder();
    term->right = ParseOperand();
    const bool ordered = term->order != Order::Equal && term->order != Order::Unequal;
    const auto is = [&](Operand::Kind kind) {
      return term->left.kind == kind || term->right.kind == kind;
    };
    if (!is(Operand::Kind::Column)) RefuseAt(start, "no column is compared; name one");
    if (is(Operand::Kind::Text) && ordered) {
      RefuseAt(start, "texts have no order; compare them by = or !=");
    }
    return term;
  }

  Order ParseOrder() {
    SkipBlanks();
    for (const OrderMark& mark : kOrderMarks) {
      if (TakeMark(mark.mark)) return mark.order;
    }
    Refuse("one of <, <=, >, >=, = and != is due");
  }

  Operand ParseOperand() {
    SkipBlanks();
    constexpr std::string_view kDue = "a column, a number or a text in quotes is due";
    if (at_ == text_.size()) Refuse(kDue);
    const char first = text_[at_];
    if (first == '\'' || first == '"') {
      return {.kind = Operand::Kind::Text, .text = std::string(TakeQuoted(first))};
    }
    const std::size_t start = at_;
    if (first == '`') return Column(TakeQuoted(first), start);
    if (first == '-' || first == '+') ++at_;
    const std::string_view word = TakeWordBytes(start);
    if (word.empty()) Refuse(kDue);
    const ParsedNumber number = ParseNumber(word);
    if (number.fault == NumberFault::None) {
      return {.kind = Operand::Kind::Number, .number = number.value, .text = {}};
    }
    if (SameName(word, "and") || SameName(word, "or") || SameName(word, "not")) {
      RefuseAt(start, kDue);
    }
    return Column(word, start);
  }

  /// A number's exponent may have a sign.
  std::string_view TakeWordBytes(std::size_t start) {
    const auto goes_on = [&] {
      if (IsWordByte(text_[at_])) return true;
      const bool sign = text_[at_] == '-' || text_[at_] == '+';
      if (!sign || at_ == start || at_ + 1 == text_.size()) return false;
      const char before = text_[at_ - 1];
      const char number = text_[start];
      const bool numeric = (number >= '0' && number <= '9') || number == '.' || number == '-';
      return numeric && (before == 'e' || before == 'E');
    };
    while (at_ < text_.size() && goes_on()) ++at_;
    return text_.substr(start, at_ - start);
  }

  std::string_view TakeQuoted(char quote) {
    const std::size_t close = text_.find(quote, at_ + 1);
    if (close == std::string_view::npos) Refuse("a quote is opened and not closed");
    const std::string_view quoted = text_.substr(at_ + 1, close - at_ - 1);
    at_ = close + 1;
    return quoted;
  }

  Operand Column(std::string_view name, std::size_t start) const {
    const bool is_bare = text_[start] != '`';
    if (!head_.header && is_bare && !FindGiven(name, head_)) {
      RefuseAt(start, "there is no header line with a column " + Shown(name) +
                          "; choose columns by number in backquotes, as in `1`");
    }
    try {
      return {.kind = Operand::Kind::Column, .column = FindColumn(name, head_), .text = {}};
    } catch (const DataError& error) {
      RefuseAt(start, error.sentence() +
                          (is_bare ? ", with backquotes around a number or several words and "
                                     "quotes around a text"
                                   : ""));
    }
  }

  static TermPointer Joined(Join join, TermPointer first, TermPointer second) {
    auto term = std::make_unique<Term>();
    term->join = join;
    term->first = std::move(first);
    term->second = std::move(second);
    return term;
  }

  void SkipBlanks() {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t')) ++at_;
  }
  bool TakeMark(std::string_view mark) {
    SkipBlanks();
    if (!text_.substr(at_).starts_with(mark)) return false;
    at_ += mark.size();
    return true;
  }
  bool TakeWord(std::string_view word) {
    SkipBlanks();
    if (!SameName(text_.substr(at_, word.size()), word)) return false;
    const std::size_t end = at_ + word.size();
    if (end < text_.size() && IsWordByte(text_[end])) return false;
    at_ = end;
    return true;
  }
  [[noreturn]] void Refuse(std::string_view why) const { RefuseAt(at_, why); }
  [[noreturn]] void RefuseAt(std::size_t at, std::string_view why) const {
    throw DataError({"--where"}, "character " + std::to_string(at + 1) + " of " + Printable(text_) +
                                     ": " + std::string(why));
  }

  std::string_view text_;
  const TableHead& head_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

class Row {
 public:
  Row(const std::vector<std::string_view>& fields, Condition::Fault& fault)
      : fields_(fields), fault_(fault) {}

  /// Nothing where a field is no number.
  std::optional<bool> Holds(const Term& term) const {
    if (term.join == Join::Comparison) return Compares(term);
    const auto first = Holds(*term.first);
    if (!first) return {};
    switch (term.join) {
      case Join::Not:
        return !*first;
      case Join::And:
        return *first ? Holds(*term.second) : first;
      default:
        return *first ? first : Holds(*term.second);
    }
  }

 private:
  std::string_view Field(std::size_t column) const {
    return column < fields_.size() ? fields_[column] : std::string_view();
  }
  std::string_view Text(const Operand& operand) const {
    return operand.kind == Operand::Kind::Column ? Field(operand.column)
                                                 : std::string_view(operand.text);
  }
  std::optional<double> Number(const Operand& operand) const {
    if (operand.kind == Operand::Kind::Number) return operand.number;
    const ParsedNumber number = ParseNumber(Field(operand.column));
    if (number.fault == NumberFault::None) return number.value;
    fault_ = {operand.column, number.fault};
    return {};
  }
  std::optional<bool> Compares(const Term& term) const {
    if (term.left.kind == Operand::Kind::Text || term.right.kind == Operand::Kind::Text) {
      const bool same = SameName(Utf8(Text(term.left)), Utf8(Text(term.right)));
      return same == (term.order == Order::Equal);
    }
    const auto left = Number(term.left);
    if (!left) return {};
    const auto right = Number(term.right);
    if (!right) return {};
    return Compare(*left, *right, term.order);
  }

  const std::vector<std::string_view>& fields_;
  Condition::Fault& fault_;
};

}  // namespace

Condition::Condition() = default;
Condition::Condition(std::string_view text, const TableHead& head)
    : root_(Parser(text, head).Parse()) {}
Condition::Condition(Condition&&) noexcept = default;
Condition& Condition::operator=(Condition&&) noexcept = default;
Condition::~Condition() = default;

bool Condition::Holds(const std::vector<std::string_view>& fields, Fault& fault) const {
  fault = {};
  return root_ == nullptr || Row(fields, fault).Holds(*root_).value_or(false);
}

}  // namespace discoplan::data
