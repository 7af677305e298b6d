#include "tests/support/notation.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/make_operator.h"

namespace lumo::test {

namespace {

class Parser
{
 public:
  Parser(TermManager& mgr, std::string_view text) : mgr_(mgr), rest_(text) {}

  const Term* parse_all()
  {
    const Term* t = parse();
    skip_blanks();
    if (!rest_.empty()) fail("text after the term");
    return t;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const
  {
    throw std::invalid_argument(what + " before \"" + std::string(rest_) + "\"");
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
    if (word == "true") return mgr_.make_true();
    if (word == "false") return mgr_.make_false();
    if (word.starts_with("#b")) return parse_numeral(word.substr(2), 2, 1);
    if (word.starts_with("#x")) return parse_numeral(word.substr(2), 16, 4);
    const std::size_t digits = word.find_first_of("0123456789");
    const DataType* type = digits == std::string::npos ? mgr_.make_bool_type()
                                                       : mgr_.make_bv_type(std::stoul(word.substr(digits)));
    return mgr_.make_constant(word, type);
  }

  const Term* parse_numeral(const std::string& digits, int base, unsigned long bits_per_digit)
  {
    mpz_t value;
    mpz_t one;
    if (mpz_init_set_str(value, digits.c_str(), base) != 0) fail("malformed numeral");
    mpz_init_set_ui(one, 1);
    const Term* t = mgr_.make_bv_number(QNumber(value, one), bits_per_digit * digits.size());
    mpz_clear(value);
    mpz_clear(one);
    return t;
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
    return mgr_.make_term(find_symbol(name, indices, args), args);
  }

  const Symbol* find_symbol(const std::string& name, const std::vector<unsigned long>& indices,
                            const std::vector<const Term*>& args)
  {
    const auto width = [&args](std::size_t i) {
      return args.at(i)->get_symbol()->get_output_type()->get_width();
    };
    for (const OperatorInfo& info : kOperators) {
      if (info.smtlib_name != name || (info.kind == Kind::kIff && width(0) != 0)) continue;
      switch (info.rule) {
        case SortRule::kBool:
          return make_operator(mgr_, info.kind, {});
        case SortRule::kIte:
          return make_operator(mgr_, info.kind, {width(1)});
        case SortRule::kEq:
        case SortRule::kUniform:
        case SortRule::kPredicate:
        case SortRule::kComparison:
          return make_operator(mgr_, info.kind, {width(0)});
        case SortRule::kConcat:
          return make_operator(mgr_, info.kind, {width(0), width(1)});
        case SortRule::kExtract:
          return make_operator(mgr_, info.kind, {indices.at(0), indices.at(1), width(0)});
        case SortRule::kRotate:
        case SortRule::kExtend:
          return make_operator(mgr_, info.kind, {indices.at(0), width(0)});
      }
    }
    fail("unknown operator " + name);
  }

  TermManager& mgr_;
  std::string_view rest_;
};

}  // namespace

const Term* parse_term(TermManager& mgr, std::string_view text) { return Parser(mgr, text).parse_all(); }

}  // namespace lumo::test
