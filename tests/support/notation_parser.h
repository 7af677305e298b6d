#ifndef LUMO_TESTS_SUPPORT_NOTATION_PARSER_H
#define LUMO_TESTS_SUPPORT_NOTATION_PARSER_H

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/terms/kind.h"

namespace lumo {

class Term;

}  // namespace lumo

namespace lumo::test {

/// Reads the notation of notation.h with any builder of terms. That has
///
///     const Term* make_truth_value(bool);
///     const Term* make_constant(const std::string& name, unsigned long width);  // width 0 for Bool
///     const Term* make_numeral(const std::string& digits, int base, unsigned long width);
///     const Term* apply(Kind, const std::array<unsigned long, kMaxArity>& parameters,
///                       const std::vector<const Term*>& args);
///     unsigned long get_width(const Term*);  // 0 for Bool
template <class Builder>
class NotationParser
{
 public:
  NotationParser(Builder& builder, std::string_view text) : builder_(builder), rest_(text) {}

  const Term* parse_all()
  {
    const Term* t = parse();
    skip_blanks();
    if (!rest_.empty()) fail("text after the term");
    return t;
  }

 private:
  using Parameters = std::array<unsigned long, kMaxArity>;

  [[noreturn]] void fail(const std::string& what) const
  {
    std::string message = what;
    message += " before \"";
    message += rest_;
    message += '"';
    throw std::invalid_argument(message);
  }

  void skip_blanks()
  {
    while (!rest_.empty() && rest_.front() == ' ')
      rest_.remove_prefix(1);
  }

  bool accept(char c)
  {
    skip_blanks();
    if (rest_.empty() || rest_.front() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::string read_word()
  {
    skip_blanks();
    const std::size_t length = std::min(rest_.find_first_of(" ()"), rest_.size());
    if (length == 0) fail("missing word");
    std::string word(rest_.substr(0, length));
    rest_.remove_prefix(length);
    return word;
  }

  const Term* parse() { return accept('(') ? parse_application() : parse_leaf(read_word()); }

  const Term* parse_leaf(const std::string& word)
  {
    if (word == "true" || word == "false") return builder_.make_truth_value(word == "true");
    if (word.starts_with("#b")) return builder_.make_numeral(word.substr(2), 2, word.size() - 2);
    if (word.starts_with("#x")) return builder_.make_numeral(word.substr(2), 16, 4 * (word.size() - 2));
    const std::size_t digits = word.find_first_of("0123456789");
    return builder_.make_constant(word, digits == std::string::npos ? 0 : std::stoul(word.substr(digits)));
  }

  const Term* parse_application()
  {
    std::vector<unsigned long> indices;
    std::string name;
    if (accept('(')) {
      if (read_word() != "_") fail("missing _");
      name = read_word();
      while (!accept(')'))
        indices.push_back(std::stoul(read_word()));
    } else {
      name = read_word();
    }
    std::vector<const Term*> args;
    while (!accept(')'))
      args.push_back(parse());
    return apply(name, indices, args);
  }

  const Term* apply(const std::string& name, const std::vector<unsigned long>& indices,
                    const std::vector<const Term*>& args)
  {
    const auto width = [this, &args](std::size_t i) { return builder_.get_width(args.at(i)); };
    for (const OperatorInfo& info : kOperators) {
      if (info.smtlib_name != name || (info.kind == Kind::kIff && width(0) != 0)) continue;
      switch (info.rule) {
        case SortRule::kBool:
          return builder_.apply(info.kind, Parameters{}, args);
        case SortRule::kIte:
          return builder_.apply(info.kind, Parameters{width(1)}, args);
        case SortRule::kEq:
        case SortRule::kUniform:
        case SortRule::kPredicate:
        case SortRule::kComparison:
          return builder_.apply(info.kind, Parameters{width(0)}, args);
        case SortRule::kConcat:
          return builder_.apply(info.kind, Parameters{width(0), width(1)}, args);
        case SortRule::kExtract:
          return builder_.apply(info.kind, Parameters{indices.at(0), indices.at(1), width(0)}, args);
        case SortRule::kRotate:
        case SortRule::kExtend:
          return builder_.apply(info.kind, Parameters{indices.at(0), width(0)}, args);
      }
    }
    fail("unknown operator " + name);
  }

  Builder& builder_;
  std::string_view rest_;
};

}  // namespace lumo::test

#endif
