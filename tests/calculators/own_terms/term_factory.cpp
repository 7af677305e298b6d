#include "term_factory.h"

#include <algorithm>
#include <stdexcept>

#include "lumo/numbers/bvnumber.h"
#include "tests/calculators/exact_reference.h"
#include "tests/support/notation_parser.h"

namespace lumo::test {

namespace {

Integer get_integer(const QNumber& q)
{
  Integer n;
  q.get_numerator(n);
  return n;
}

/// The widths that an operator takes, in the order of its arguments; none for operators that no functor has.
std::vector<unsigned long> get_argument_widths(Kind kind, const std::vector<unsigned long>& p)
{
  switch (get_operator_info(kind).rule) {
    case SortRule::kUniform:
      return std::vector<unsigned long>(get_operator_info(kind).arity, p[0]);
    case SortRule::kConcat:
      return {p[0], p[1]};
    case SortRule::kExtract:
      return {p[2]};
    case SortRule::kRotate:
    case SortRule::kExtend:
      return {p[1]};
    default:
      return {};
  }
}

unsigned long get_result_width(Kind kind, const Parameters& p)
{
  switch (get_operator_info(kind).rule) {
    case SortRule::kBool:
    case SortRule::kEq:
    case SortRule::kPredicate:
      return 0;
    case SortRule::kIte:
    case SortRule::kUniform:
      return p[0];
    case SortRule::kComparison:
      return 1;
    case SortRule::kConcat:
    case SortRule::kExtend:
      return p[0] + p[1];
    case SortRule::kExtract:
      return p[0] + 1 - p[1];
    case SortRule::kRotate:
      return p[1];
  }
  return 0;
}

/// x rotated to the left by k bits
Integer rotate(const Integer& x, unsigned long k, unsigned long w)
{
  Integer high;
  Integer low;
  mpz_mul_2exp(high, x, k);
  mpz_fdiv_q_2exp(low, x, w - k);
  mpz_ior(high, high, low);
  return high;
}

/// The value before it is reduced to the width of the result
Integer fold(Kind kind, const std::vector<unsigned long>& p, const std::vector<Integer>& n)
{
  Integer r;
  switch (kind) {
    case Kind::kBvAdd:
      mpz_add(r, n[0], n[1]);
      return r;
    case Kind::kBvSub:
      mpz_sub(r, n[0], n[1]);
      return r;
    case Kind::kBvXor:
      mpz_xor(r, n[0], n[1]);
      return r;
    case Kind::kBvNot:
      mpz_com(r, n[0]);
      return r;
    case Kind::kBvNeg:
      mpz_neg(r, n[0]);
      return r;
    case Kind::kBvRotateLeft:
      return p[1] == 0 ? n[0] : rotate(n[0], p[0] % p[1], p[1]);
    case Kind::kBvRotateRight:
      return p[1] == 0 ? n[0] : rotate(n[0], p[1] - p[0] % p[1], p[1]);
    case Kind::kBvExtract:
      mpz_fdiv_q_2exp(r, n[0], p[1]);
      return r;
    case Kind::kBvConcat:
      mpz_mul_2exp(r, n[0], p[1]);
      mpz_add(r, r, n[1]);
      return r;
    case Kind::kBvZeroExtend:
      return n[0];
    default:
      throw std::logic_error("no functor folds this operator");
  }
}

}  // namespace

const Term* TermFactory::make_truth_value(bool b)
{
  const char* name = b ? "true" : "false";
  return apply(intern(name, b ? Kind::kTrue : Kind::kFalse, name, 0), {});
}

const Term* TermFactory::make_constant(const std::string& name, unsigned long width)
{
  return apply(intern("constant " + name, Kind::kConstant, name, width), {});
}

const Term* TermFactory::make_numeral(const Integer& n, unsigned long width)
{
  Integer reduced;
  mpz_fdiv_r_2exp(reduced, n, width);
  const std::string name = print_numeral(reduced, width);
  const Symbol* s = intern(name, Kind::kNumeral, name, width);
  Symbol& numeral = *symbols_.at(name);
  if (!numeral.number_) numeral.number_ = BVNumber::from_integer(reduced);
  return apply(s, {});
}

const Term* TermFactory::make_numeral(const std::string& digits, int base, unsigned long width)
{
  Integer n;
  if (mpz_set_str(n, digits.c_str(), base) != 0) throw std::invalid_argument("malformed numeral " + digits);
  return make_numeral(n, width);
}

const Symbol* TermFactory::make_operator(Kind kind, const Parameters& parameters)
{
  std::string name(get_operator_info(kind).smtlib_name);
  const SortRule rule = get_operator_info(kind).rule;
  if (rule == SortRule::kRotate || rule == SortRule::kExtend || rule == SortRule::kExtract) {
    name = "(_ " + name + " " + std::to_string(parameters[0]);
    if (rule == SortRule::kExtract) name += " " + std::to_string(parameters[1]);
    name += ")";
  }
  std::string key = "operator " + std::to_string(static_cast<int>(kind));
  for (const unsigned long p : parameters)
    key += " " + std::to_string(p);
  const Symbol* s = intern(key, kind, name, get_result_width(kind, parameters));
  symbols_.at(key)->parameters_.assign(parameters.begin(), parameters.end());
  return s;
}

const Term* TermFactory::apply(const Symbol* s, const std::vector<const Term*>& args)
{
  std::unique_ptr<Term>& place = terms_[{s, args}];
  if (place == nullptr) place.reset(new Term(s, args));
  return place.get();
}

const Term* TermFactory::parse(std::string_view text) { return NotationParser(*this, text).parse_all(); }

const Term* TermFactory::simplify(const Symbol* s, const std::vector<const Term*>& args)
{
  const std::vector<unsigned long> widths = get_argument_widths(get_kind(s), s->parameters_);
  std::vector<Integer> numbers;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const QNumber* number = get_number(args[i]->symbol_);
    if (number == nullptr || get_width(args[i]) != widths.at(i)) return apply(s, args);
    numbers.push_back(get_integer(*number));
  }
  return make_numeral(fold(get_kind(s), s->parameters_, numbers), s->type_->width_);
}

std::string TermFactory::print(const Term* t)
{
  const Symbol* s = t->symbol_;
  if (t->args_.empty()) return s->name_;
  Parameters parameters;
  std::copy_n(s->parameters_.begin(), kMaxArity, parameters.begin());
  std::vector<std::string> args;
  for (const Term* arg : t->args_)
    args.push_back(print(arg));
  return print_application(get_kind(s), parameters, args);
}

const DataType* TermFactory::make_type(unsigned long width)
{
  std::unique_ptr<DataType>& place = types_[width];
  if (place == nullptr) place.reset(new DataType(width));
  return place.get();
}

const Symbol* TermFactory::intern(const std::string& key, Kind kind, std::string name, unsigned long width)
{
  std::unique_ptr<Symbol>& place = symbols_[key];
  if (place == nullptr) {
    place.reset(new Symbol);
    place->name_ = std::move(name);
    place->kind_ = static_cast<int>(kind);
    place->type_ = make_type(width);
  }
  return place.get();
}

Queries& get_queries()
{
  static Queries queries;
  return queries;
}

}  // namespace lumo::test
