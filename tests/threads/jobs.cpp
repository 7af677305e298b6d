#include "tests/threads/jobs.h"

#include <array>
#include <string_view>
#include <vector>

#include "lumo/calculators/calculator_table.h"
#include "lumo/elimination/eliminate.h"
#include "lumo/elimination/extend.h"
#include "lumo/model/model_store.h"
#include "lumo/numbers/bvnumber.h"
#include "tests/support/gmp_number.h"
#include "tests/support/notation.h"
#include "tests/support/numbered.h"
#include "tests/support/random.h"

namespace lumo::test {

namespace {

constexpr unsigned long kWidth = 128;

QNumber draw_integer(Random& random)
{
  Integer drawn;
  random.integer(drawn, kWidth);
  return {drawn, Integer(1)};
}

QNumber draw_pattern(Random& random)
{
  Integer drawn;
  random.natural(drawn, kWidth);
  return BVNumber::from_integer(drawn);
}

QNumber draw_rational(Random& random)
{
  Integer num;
  Integer den;
  random.integer(num, kWidth);
  random.natural(den, kWidth);
  if (den.sign() == 0) den = 1;
  return {num, den};
}

QNumber draw_small_fraction(Random& random)
{
  const long bound = random.flip() ? 1023 : 1L << 31;
  return {random.between(-bound, bound), random.between(1, bound)};
}

/// Appends the results of the operations on x and y.
void add_results(std::string& text, const QNumber& x, const QNumber& y)
{
  for (const QNumber& result : {x + y, x - y, x * y}) {
    text += result.to_string();
    text += result.is_big() ? "b " : " ";
  }
  text += x < y ? "less " : "not less ";
  text += x == y ? "equal " : "unequal ";
  text += std::to_string((x + y).hash()) + '\n';
}

void add_division(std::string& text, const QNumber& x, const QNumber& y)
{
  if (y.sign() == 0) return;
  QNumber q;
  QNumber r;
  x.divmod(y, q, r);
  text += q.to_string() + " rem " + r.to_string() + '\n';
}

std::string get_name(const Term* t) { return t->get_symbol()->get_name(); }

/// Applications to free constants, and to numerals, which `$` marks.
constexpr std::array<std::string_view, 24> kApplications = {
    "(bvnot x128)",
    "(bvneg x128)",
    "((_ rotate_left 77) x128)",
    "(bvand x128 y128)",
    "(bvand $ x128)",
    "(bvor x128 $)",
    "(bvxor $ x128)",
    "(concat x100 y28)",
    "((_ extract 119 20) x140)",
    "((_ zero_extend 28) x100)",
    "((_ sign_extend 28) x100)",
    "(bvshl x128 y128)",
    "(bvadd $ x128)",
    "(bvsub $ x128)",
    "(bvsub x128 y128)",
    "(bvmul x128 $)",
    "(bvudiv x128 y128)",
    "(bvurem x128 y128)",
    "(bvult $ x128)",
    "(bvule x128 $)",
    "(bvslt $ x128)",
    "(bvsle x128 $)",
    "(bvcomp x128 $)",
    "(= x128 $)",
};

/// Assertions most of whose constants are free.
constexpr std::array<std::string_view, 8> kAssertions = {
    "(= (bvadd a128 (bvmul b128 b128)) c128)",
    "(bvult (bvxor d128 $) $)",
    "(bvsle $ (bvsub (bvnot e128) (bvudiv f128 f128)))",
    "(not (= (concat g100 h28) (bvmul i128 $)))",
    "(ite p (bvule j128 $) (= k128 (bvneg l128)))",
    "(bvslt ((_ sign_extend 28) m100) (bvor n128 $))",
    "(= ((_ extract 119 20) q140) ((_ rotate_left 3) r100))",
    "(and (or s t) (= u (bvult v128 w128)))",
};

const Term* make_term(TermManager& mgr, Random& random, std::string_view pattern)
{
  std::string text(pattern);
  for (std::size_t place = text.find('$'); place != std::string::npos; place = text.find('$'))
    text.replace(place, 1, get_name(mgr.make_bv_number(draw_pattern(random), kWidth)));
  return parse_term(mgr, text);
}

const Term* draw_value(TermManager& mgr, Random& random, const DataType* type)
{
  unsigned long width = 0;
  if (!mgr.is_bv_type(type, &width)) return random.flip() ? mgr.make_true() : mgr.make_false();
  return mgr.make_bv_number(draw_pattern(random), width);
}

/// The definitions that the calculator pushes, or the text of its refusal.
std::string call_calculator(TermManager& mgr, const Term* t, const Term* value)
{
  std::string text;
  ModelStore::DefinitionStack defs;
  try {
    (*find_calculator(mgr, t->get_symbol()))(&mgr, t, value, defs);
  } catch (const Exception& e) {
    text += e.what();
  }
  for (; !defs.empty(); defs.pop())
    text += get_name(defs.top().term) + " = " + get_name(defs.top().value) + '\n';
  return text;
}

}  // namespace

std::string calculate_with_rationals(std::uint64_t stream)
{
  Random random(stream);
  std::string text;
  for (int i = 0; i < 100; ++i) {
    add_results(text, draw_rational(random), draw_rational(random));
    add_results(text, draw_rational(random), QNumber(random.word()));
    const QNumber x = draw_integer(random);
    const QNumber y = random.flip() ? draw_integer(random) : QNumber(random.word());
    add_results(text, x, y);
    add_division(text, x, y);
  }
  return text;
}

std::string calculate_with_small_fractions(std::uint64_t stream)
{
  Random random(stream);
  std::string text;
  for (int i = 0; i < 1000; ++i)
    add_results(text, draw_small_fraction(random), draw_small_fraction(random));
  return text;
}

std::string calculate_with_patterns(std::uint64_t stream)
{
  Random random(stream);
  std::string text;
  for (int i = 0; i < 100; ++i) {
    const QNumber x = draw_pattern(random);
    const QNumber y = draw_pattern(random);
    const unsigned long k = random.index(kWidth);
    unsigned long exponent = 0;
    for (const QNumber& result :
         {BVNumber::pow2(k), BVNumber::reduce(x * y, kWidth), BVNumber::complement(x, kWidth),
          BVNumber::concatenate(x, y, kWidth), BVNumber::extract(x, k, kWidth - k),
          BVNumber::rotate_left(x, k, kWidth), BVNumber::shift_left(x, k), BVNumber::shift_right(x, k),
          BVNumber::invert_odd(BVNumber::bit_or(x, QNumber(1)), kWidth), BVNumber::bit_and(x, y),
          BVNumber::bit_or(x, y), BVNumber::bit_xor(x, y)})
    {
      text += result.to_string() + ' ';
    }
    text += BVNumber::is_bit_set(x, k) ? "set " : "clear ";
    text += BVNumber::is_pattern(x, k) ? "pattern " : "wide ";
    text += BVNumber::is_pow2(x + QNumber(1), exponent) ? std::to_string(exponent) + '\n' : "none\n";
  }
  return text;
}

std::string make_numerals(std::uint64_t stream)
{
  Random random(stream);
  TermManager mgr;
  ModelStore model(&mgr);
  std::string text;
  for (int i = 0; i < 100; ++i) {
    const Term* x = mgr.make_bv_number(draw_integer(random), kWidth);
    const Term* y = mgr.make_bv_number(draw_pattern(random), kWidth);
    QNumber value;
    text += mgr.is_number(x->get_symbol(), &value) ? value.to_string() : "none";
    for (const Symbol* s :
         {mgr.make_bv_add_symbol(kWidth), mgr.make_bv_mul_symbol(kWidth), mgr.make_bv_xor_symbol(kWidth),
          mgr.make_bv_udiv_symbol(kWidth), mgr.make_bv_srem_symbol(kWidth), mgr.make_bv_slt_symbol(kWidth)})
    {
      text += ' ' + get_name(model.get_value(mgr.make_term(s, {x, y})));
    }
    text += '\n';
  }
  return text;
}

std::string call_calculators(std::uint64_t stream)
{
  Random random(stream);
  TermManager mgr;
  std::string text;
  for (int i = 0; i < 10; ++i) {
    for (const std::string_view application : kApplications) {
      const Term* t = make_term(mgr, random, application);
      text += call_calculator(mgr, t, draw_value(mgr, random, t->get_symbol()->get_output_type()));
    }
  }
  return text;
}

std::string eliminate_and_extend(std::uint64_t stream)
{
  Random random(stream);
  std::string text;
  for (int i = 0; i < 10; ++i) {
    TermManager mgr;
    std::vector<const Term*> assertions;
    assertions.reserve(kAssertions.size());
    for (const std::string_view assertion : kAssertions)
      assertions.push_back(make_term(mgr, random, assertion));
    const Elimination rest = eliminate(mgr, assertions);
    ModelStore model(&mgr);
    extend(mgr, rest.trail, model);
    text += numbered("left: ", rest.assertions.size()) + '\n';
    text += numbered("violated: ", find_violated(mgr, assertions, model)) + '\n';
    for (const Step& step : rest.trail.steps) {
      text += get_name(step.constant) + " = " + get_name(model.get_value(step.constant)) + '\n';
      for (std::size_t k = 0; k < step.application->get_num_args(); ++k)
        text += ' ' + get_name(model.get_value(step.application->get_arg(k)));
    }
  }
  return text;
}

}  // namespace lumo::test
