#include "tests/elimination/rule_rows.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <stdexcept>

#include "tests/support/notation.h"

namespace lumo::test {

namespace {

using enum RuleFamily;

// Above these widths, multiplications of two unknown numbers take solvers long.
constexpr unsigned long kAllWidths = 0;
constexpr unsigned long kMaxEvenOfZ3 = 8;
constexpr unsigned long kMaxOddOfCvc5 = 7;
constexpr unsigned long kMaxEvenOfCvc5 = 7;

constexpr RuleRow kRuleRows[] = {
    {"not", kBools, "(not p)", "q := (not p)", "q", "p := (not q)"},
    {"and", kBools, "(and p o)", "q := (and p o)", "q", "p := q; o := q"},
    {"and_chain", kBools, "(and (and p b) o)", "q := (and p o)", "(and b q)", "p := q; o := q"},
    {"or", kBools, "(or p o)", "q := (or p o)", "q", "p := q; o := q"},
    {"or_chain", kBools, "(or (or p b) o)", "q := (or p o)", "(or b q)", "p := q; o := q"},
    {"iff_left", kBools, "(= p b)", "q := (= p b)", "q", "p := (= q b)"},
    {"iff_right", kBools, "(= b p)", "q := (= b p)", "q", "p := (= q b)"},
    {"iff", kBools, "(= p o)", "q := (= p o)", "q", "p := true; o := q"},
    {"ite_bool_first", kBools, "(ite p o b)", "q := (ite p o b)", "q", "p := true; o := q"},
    {"ite_bool_second", kBools, "(ite p b o)", "l := (not p); q := (ite l o b)", "q",
     "l := true; o := q; p := (not l)"},
    {"ite_bool_branches", kBools, "(ite b p o)", "q := (ite b p o)", "q", "p := q; o := q"},
    {"ite_bool", kBools, "(ite p o r)", "q := (ite p o r)", "q", "p := true; o := q; r := q"},
    {"ite_first", kWidths, "(ite p x s)", "f := (ite p x s)", "f", "p := true; x := f"},
    {"ite_second", kWidths, "(ite p s x)", "f := (ite p s x)", "f", "p := false; x := f"},
    {"ite_branches", kWidths, "(ite b x y)", "f := (ite b x y)", "f", "x := f; y := f"},
    {"ite", kWidths, "(ite p x y)", "f := (ite p x y)", "f", "p := true; x := f; y := f"},

    {"eq_left", kWidths, "(= x s)", "q := (= x s)", "q", "x := (ite q s (bvadd s {one}))"},
    {"eq_right", kWidths, "(= s x)", "q := (= s x)", "q", "x := (ite q s (bvadd s {one}))"},
    {"eq", kWidths, "(= x y)", "q := (= x y)", "q", "x := (ite q {zero} {one}); y := {zero}"},
    {"bvcomp_left", kWidths, "(bvcomp x s)", "f1 := (bvcomp x s)", "f1",
     "x := (ite (= f1 #b1) s (bvadd s {one}))"},
    {"bvcomp_right", kWidths, "(bvcomp s x)", "f1 := (bvcomp s x)", "f1",
     "x := (ite (= f1 #b1) s (bvadd s {one}))"},
    {"bvcomp", kWidths, "(bvcomp x y)", "f1 := (bvcomp x y)", "f1",
     "x := (ite (= f1 #b1) {zero} {one}); y := {zero}"},

    {"bvnot", kWidths, "(bvnot x)", "f := (bvnot x)", "f", "x := (bvnot f)"},
    {"bvneg", kWidths, "(bvneg x)", "f := (bvneg x)", "f", "x := (bvneg f)"},
    {"rotate_left", kRotations, "((_ rotate_left {k}) x)", "f := ((_ rotate_left {k}) x)", "f",
     "x := ((_ rotate_right {k}) f)"},
    {"rotate_right", kRotations, "((_ rotate_right {k}) x)", "f := ((_ rotate_right {k}) x)", "f",
     "x := ((_ rotate_left {k}) f)"},
    {"bvand", kWidths, "(bvand x y)", "f := (bvand x y)", "f", "x := f; y := f"},
    {"bvand_chain", kWidths, "(bvand (bvand x s) y)", "f := (bvand x y)", "(bvand s f)", "x := f; y := f"},
    {"bvand_long_chain", kWidths, "(bvand (bvand (bvand x s) t) y)", "f := (bvand x y)",
     "(bvand (bvand s t) f)", "x := f; y := f"},
    {"bvor", kWidths, "(bvor x y)", "f := (bvor x y)", "f", "x := f; y := {zero}"},
    {"bvor_chain", kWidths, "(bvor (bvor x s) y)", "f := (bvor x y)", "(bvor s f)", "x := f; y := {zero}"},
    {"bvxor_left", kWidths, "(bvxor x s)", "f := (bvxor x s)", "f", "x := (bvxor f s)"},
    {"bvxor_right", kWidths, "(bvxor s x)", "f := (bvxor s x)", "f", "x := (bvxor f s)"},
    {"bvxor", kWidths, "(bvxor x y)", "f := (bvxor x y)", "f", "x := f; y := {zero}"},
    {"concat", kParts, "(concat x y{n})", "f{m} := (concat x y{n})", "f{m}",
     "x := ((_ extract {m-1} {n}) f{m}); y{n} := ((_ extract {n-1} 0) f{m})"},
    {"extract", kExtractions, "((_ extract {msb} {lsb}) x)", "f{n} := ((_ extract {msb} {lsb}) x)", "f{n}",
     "x := (bvshl ((_ zero_extend {w-n}) f{n}) {K})"},

    {"bvshl", kWidths, "(bvshl x y)", "f := (bvshl x y)", "f", "x := f; y := {zero}"},
    {"bvshl_near", kShifts, "(bvshl x {K})", "f{w-k} := ((_ extract {w-k-1} 0) x)", "(concat f{w-k} {zeros})",
     "x := ((_ zero_extend {k}) f{w-k})"},
    {"bvshl_none", kNoShifts, "(bvshl x {K})", "", "x", ""},
    {"bvshl_far", kFarShifts, "(bvshl x {K})", "", "{zero}", ""},
    {"bvlshr", kWidths, "(bvlshr x y)", "f := (bvlshr x y)", "f", "x := f; y := {zero}"},
    {"bvlshr_near", kShifts, "(bvlshr x {K})", "f{w-k} := ((_ extract {w-1} {k}) x)",
     "(concat {zeros} f{w-k})", "x := (concat f{w-k} {zeros})"},
    {"bvlshr_none", kNoShifts, "(bvlshr x {K})", "", "x", ""},
    {"bvlshr_far", kFarShifts, "(bvlshr x {K})", "", "{zero}", ""},
    {"bvashr", kWidths, "(bvashr x y)", "f := (bvashr x y)", "f", "x := f; y := {zero}"},
    {"bvashr_near", kShifts, "(bvashr x {K})", "f{w-k} := ((_ extract {w-1} {k}) x)",
     "((_ sign_extend {k}) f{w-k})", "x := (concat f{w-k} {zeros})"},
    {"bvashr_none", kNoShifts, "(bvashr x {K})", "", "x", ""},
    {"bvashr_far", kSignShifts, "(bvashr x {K})", "f1 := ((_ extract {w-1} {w-1}) x)",
     "((_ sign_extend {w-1}) f1)", "x := (bvshl ((_ zero_extend {w-1}) f1) {TOP})"},

    {"bvadd_left", kWidths, "(bvadd x s)", "f := (bvadd x s)", "f", "x := (bvsub f s)"},
    {"bvadd_right", kWidths, "(bvadd s x)", "f := (bvadd s x)", "f", "x := (bvsub f s)"},
    {"bvadd", kWidths, "(bvadd x y)", "f := (bvadd x y)", "f", "x := f; y := {zero}"},
    {"bvsub_left", kWidths, "(bvsub x s)", "f := (bvsub x s)", "f", "x := (bvadd f s)"},
    {"bvsub_right", kWidths, "(bvsub s x)", "f := (bvsub s x)", "f", "x := (bvsub s f)"},
    {"bvsub", kWidths, "(bvsub x y)", "f := (bvsub x y)", "f", "x := f; y := {zero}"},
    {"bvmul", kWidths, "(bvmul x y)", "f := (bvmul x y)", "f", "x := f; y := {one}"},
    {"bvmul_chain", kWidths, "(bvmul (bvmul x s) y)", "f := (bvmul x y)", "(bvmul s f)",
     "x := f; y := {one}"},
    {"bvmul_odd_right", kWidths, "(bvmul x c)", "f := (bvmul x c)", "f", "x := (bvmul i f)",
     "(= (bvmul i c) {one})", kAllWidths, kMaxOddOfCvc5},
    {"bvmul_odd_left", kWidths, "(bvmul c x)", "f := (bvmul c x)", "f", "x := (bvmul i f)",
     "(= (bvmul i c) {one})", kAllWidths, kMaxOddOfCvc5},
    {"bvmul_even", kFactors, "(bvmul x d)", "f := (bvmul x c); g{w-k} := ((_ extract {w-k-1} 0) f)",
     "(concat g{w-k} {zeros})", "f := ((_ zero_extend {k}) g{w-k}); x := (bvmul i f)",
     "(and (and (= d (bvshl c {K})) (= c (bvlshr d {K}))) (and (= (bvmul i c) {one}) (not (= c {one}))))",
     kMaxEvenOfZ3, kMaxEvenOfCvc5},
    {"bvmul_power", kShifts, "(bvmul x {POW})", "f{w-k} := ((_ extract {w-k-1} 0) x)",
     "(concat f{w-k} {zeros})", "x := ((_ zero_extend {k}) f{w-k})"},
    {"bvmul_zero", kWidths, "(bvmul x {zero})", "", "{zero}", ""},
    {"bvudiv", kWidths, "(bvudiv x y)", "f := (bvudiv x y)", "f", "x := f; y := {one}"},
    {"bvsdiv", kWidths, "(bvsdiv x y)", "f := (bvsdiv x y)", "f", "x := f; y := {one}"},

    {"bvult_left", kWidths, "(bvult x s)", "q := (bvult x s)", "(and q (not (= s {zero})))",
     "x := (ite (and q (not (= s {zero}))) (bvsub s {one}) s)"},
    {"bvult_right", kWidths, "(bvult s x)", "q := (bvult s x)", "(and q (not (= s {ones})))",
     "x := (ite (and q (not (= s {ones}))) (bvadd s {one}) s)"},
    {"bvule_left", kWidths, "(bvule x s)", "q := (bvule x s)", "(or q (= s {ones}))",
     "x := (ite (or q (= s {ones})) s (bvadd s {one}))"},
    {"bvule_right", kWidths, "(bvule s x)", "q := (bvule s x)", "(or q (= s {zero}))",
     "x := (ite (or q (= s {zero})) s (bvsub s {one}))"},
    {"bvslt_left", kWidths, "(bvslt x s)", "q := (bvslt x s)", "(and q (not (= s {least})))",
     "x := (ite (and q (not (= s {least}))) (bvsub s {one}) s)"},
    {"bvslt_right", kWidths, "(bvslt s x)", "q := (bvslt s x)", "(and q (not (= s {greatest})))",
     "x := (ite (and q (not (= s {greatest}))) (bvadd s {one}) s)"},
    {"bvsle_left", kWidths, "(bvsle x s)", "q := (bvsle x s)", "(or q (= s {greatest}))",
     "x := (ite (or q (= s {greatest})) s (bvadd s {one}))"},
    {"bvsle_right", kWidths, "(bvsle s x)", "q := (bvsle s x)", "(or q (= s {least}))",
     "x := (ite (or q (= s {least})) s (bvsub s {one}))"},

    {"bvult_numeral_left", kWidths, "(bvult x c)", "q := (bvult x c)", "q", "x := (ite q (bvsub c {one}) c)",
     "(not (= c {zero}))"},
    {"bvult_numeral_right", kWidths, "(bvult c x)", "q := (bvult c x)", "q", "x := (ite q (bvadd c {one}) c)",
     "(not (= c {ones}))"},
    {"bvule_numeral_left", kWidths, "(bvule x c)", "q := (bvule x c)", "q", "x := (ite q c (bvadd c {one}))",
     "(not (= c {ones}))"},
    {"bvule_numeral_right", kWidths, "(bvule c x)", "q := (bvule c x)", "q", "x := (ite q c (bvsub c {one}))",
     "(not (= c {zero}))"},
    {"bvslt_numeral_left", kWidths, "(bvslt x c)", "q := (bvslt x c)", "q", "x := (ite q (bvsub c {one}) c)",
     "(not (= c {least}))"},
    {"bvslt_numeral_right", kWidths, "(bvslt c x)", "q := (bvslt c x)", "q", "x := (ite q (bvadd c {one}) c)",
     "(not (= c {greatest}))"},
    {"bvsle_numeral_left", kWidths, "(bvsle x c)", "q := (bvsle x c)", "q", "x := (ite q c (bvadd c {one}))",
     "(not (= c {greatest}))"},
    {"bvsle_numeral_right", kWidths, "(bvsle c x)", "q := (bvsle c x)", "q", "x := (ite q c (bvsub c {one}))",
     "(not (= c {least}))"},
    {"bvult_bound_left", kWidths, "(bvult x {zero})", "", "false", ""},
    {"bvult_bound_right", kWidths, "(bvult {ones} x)", "", "false", ""},
    {"bvule_bound_left", kWidths, "(bvule x {ones})", "", "true", ""},
    {"bvule_bound_right", kWidths, "(bvule {zero} x)", "", "true", ""},
    {"bvslt_bound_left", kWidths, "(bvslt x {least})", "", "false", ""},
    {"bvslt_bound_right", kWidths, "(bvslt {greatest} x)", "", "false", ""},
    {"bvsle_bound_left", kWidths, "(bvsle x {greatest})", "", "true", ""},
    {"bvsle_bound_right", kWidths, "(bvsle {least} x)", "", "true", ""},

    {"bvult", kWidths, "(bvult x y)", "q := (bvult x y)", "q", "x := {zero}; y := (ite q {one} {zero})"},
    {"bvule", kWidths, "(bvule x y)", "q := (bvule x y)", "q", "x := (ite q {zero} {one}); y := {zero}"},
    {"bvslt_bit", kOneBit, "(bvslt x y)", "q := (bvslt x y)", "q", "x := (ite q {one} {zero}); y := {zero}"},
    {"bvslt", kWider, "(bvslt x y)", "q := (bvslt x y)", "q", "x := {zero}; y := (ite q {one} {zero})"},
    {"bvsle_bit", kOneBit, "(bvsle x y)", "q := (bvsle x y)", "q", "x := {zero}; y := (ite q {zero} {one})"},
    {"bvsle", kWider, "(bvsle x y)", "q := (bvsle x y)", "q", "x := (ite q {zero} {one}); y := {zero}"},
};

// -----------------------------------------------------------------------------------------------------------
// Instances

/// All numbers up to the limit for small widths, above a selection.
std::vector<unsigned long> choose(unsigned long w, std::initializer_list<unsigned long> selection,
                                  unsigned long first, unsigned long last)
{
  constexpr unsigned long kSmall = 4;
  std::set<unsigned long> chosen;
  for (unsigned long k = first; w <= kSmall && k <= last; ++k)
    chosen.insert(k);
  for (const unsigned long k : selection) {
    if (k >= first && k <= last) chosen.insert(k);
  }
  return {chosen.begin(), chosen.end()};
}

std::vector<RuleNumbers> with_amounts(unsigned long w, const std::vector<unsigned long>& amounts)
{
  std::vector<RuleNumbers> instances;
  instances.reserve(amounts.size());
  for (const unsigned long k : amounts)
    instances.push_back({{"w", w}, {"k", k}});
  return instances;
}

std::vector<RuleNumbers> list_extractions(unsigned long w)
{
  std::vector<RuleNumbers> instances;
  const std::vector<unsigned long> places = choose(w, {0, 1, w / 2, w - 1}, 0, w - 1);
  for (const unsigned long msb : places) {
    for (const unsigned long lsb : places) {
      if (lsb <= msb)
        instances.push_back({{"w", w}, {"msb", msb}, {"lsb", lsb}, {"k", lsb}, {"n", msb + 1 - lsb}});
    }
  }
  return instances;
}

/// The largest shift amount that is tried; one that has all bits set is among them.
unsigned long get_largest_amount(unsigned long w)
{
  constexpr unsigned long kFew = 20;
  return w < kFew ? (1UL << w) - 1 : 1UL << kFew;
}

// -----------------------------------------------------------------------------------------------------------
// Texts

std::string make_pattern(unsigned long w, const auto& is_set)
{
  std::string bits = "#b";
  for (unsigned long i = w; i-- > 0;)
    bits += is_set(i) ? '1' : '0';
  return bits;
}

/// Texts with names, numbers and patterns filled in.
class RuleText
{
 public:
  explicit RuleText(const RuleNumbers& numbers)
      : numbers_(numbers), w_(numbers.contains("w") ? numbers.at("w") : 0)
  {}

  [[nodiscard]] std::string fill(std::string_view text) const
  {
    std::string filled;
    for (std::size_t i = 0; i < text.size();) {
      if (text[i] == '{') {
        const std::size_t end = text.find('}', i);
        filled += replace(text.substr(i + 1, end - i - 1));
        i = end + 1;
      } else {
        i = copy_word(text, i, filled);
      }
    }
    return filled;
  }

 private:
  /// Copies a word, or a character outside of words; a name of one letter gets its width.
  std::size_t copy_word(std::string_view text, std::size_t i, std::string& filled) const
  {
    const auto is_letter = [&](std::size_t j) {
      return j < text.size() &&
             (std::isalnum(static_cast<unsigned char>(text[j])) != 0 || text[j] == '_' || text[j] == '#');
    };
    std::size_t end = i;
    while (is_letter(end))
      ++end;
    if (end == i) ++end;
    filled += text.substr(i, end - i);
    const bool is_name =
        end == i + 1 && std::string_view("cdfgistxyz").find(text[i]) != std::string_view::npos;
    if (is_name && (end == text.size() || text[end] != '{')) filled += std::to_string(w_);
    return end;
  }

  [[nodiscard]] std::string replace(std::string_view word) const
  {
    const unsigned long k = numbers_.contains("k") ? numbers_.at("k") : 0;
    const auto bit_of = [](unsigned long number) {
      return [number](unsigned long i) { return i < 64 && (number >> i & 1U) != 0; };
    };
    if (word == "zero") return make_pattern(w_, bit_of(0));
    if (word == "one") return make_pattern(w_, bit_of(1));
    if (word == "ones") return make_pattern(w_, [](unsigned long) { return true; });
    if (word == "least") return make_pattern(w_, [this](unsigned long i) { return i + 1 == w_; });
    if (word == "greatest") return make_pattern(w_, [this](unsigned long i) { return i + 1 != w_; });
    if (word == "K") return make_pattern(w_, bit_of(k));
    if (word == "TOP") return make_pattern(w_, bit_of(w_ - 1));
    if (word == "POW") return make_pattern(w_, [k](unsigned long i) { return i == k; });
    if (word == "zeros") return make_pattern(k, bit_of(0));
    return std::to_string(subtract(word));
  }

  /// A number of the family, or a difference of such numbers and digits.
  [[nodiscard]] unsigned long subtract(std::string_view word) const
  {
    unsigned long result = 0;
    for (bool is_first = true; !word.empty(); is_first = false) {
      const std::string part(word.substr(0, word.find('-')));
      word.remove_prefix(std::min(part.size() + 1, word.size()));
      const bool is_digit = std::isdigit(static_cast<unsigned char>(part.front())) != 0;
      const unsigned long number = is_digit ? std::stoul(part) : numbers_.at(part);
      result = is_first ? number : result - number;
    }
    return result;
  }

  const RuleNumbers& numbers_;
  unsigned long w_;
};

std::vector<RuleDefinition> read_definitions(TermManager& mgr, const RuleText& text,
                                             std::string_view definitions)
{
  std::vector<RuleDefinition> read;
  while (!definitions.empty()) {
    const std::size_t end = std::min(definitions.find("; "), definitions.size());
    const std::string_view definition = definitions.substr(0, end);
    const std::size_t sign = definition.find(" := ");
    if (sign == std::string_view::npos) throw std::logic_error("no definition");
    read.emplace_back(parse_term(mgr, text.fill(definition.substr(0, sign))),
                      parse_term(mgr, text.fill(definition.substr(sign + 4))));
    definitions.remove_prefix(std::min(end + 2, definitions.size()));
  }
  return read;
}

const Term* replace_constant(TermManager& mgr, const Term* t, const RuleDefinition& definition)
{
  if (t == definition.first) return definition.second;
  if (t->get_num_args() == 0) return t;
  std::vector<const Term*> args;
  for (std::size_t i = 0; i < t->get_num_args(); ++i)
    args.push_back(replace_constant(mgr, t->get_arg(i), definition));
  return mgr.make_term(t->get_symbol(), args);
}

const Term* make_difference(TermManager& mgr, const Term* lhs, const Term* rhs)
{
  const DataType* type = lhs->get_symbol()->get_output_type();
  const Symbol* equality = type->is_bool() ? mgr.make_iff_symbol() : mgr.make_eq_symbol(type);
  return mgr.make_term(mgr.make_not_symbol(), {mgr.make_term(equality, {lhs, rhs})});
}

}  // namespace

std::span<const RuleRow> get_rule_rows() { return kRuleRows; }

std::vector<RuleNumbers> list_instances(const RuleRow& row, unsigned long w)
{
  if ((row.family == kBools) != (w == 0)) return {};
  std::vector<RuleNumbers> parts;
  switch (row.family) {
    case kBools:
      return {{}};
    case kWidths:
      return {{{"w", w}}};
    case kOneBit:
      return w == 1 ? std::vector<RuleNumbers>{{{"w", w}}} : std::vector<RuleNumbers>{};
    case kWider:
      return w > 1 ? std::vector<RuleNumbers>{{{"w", w}}} : std::vector<RuleNumbers>{};
    case kRotations:
      return with_amounts(w, choose(w, {0, 1, w / 2, w - 1, w, w + 1, 2 * w}, 0, 2 * w));
    case kExtractions:
      return list_extractions(w);
    case kParts:
      for (const unsigned long n : std::set<unsigned long>{1, 3, w})
        parts.push_back({{"w", w}, {"n", n}, {"m", w + n}});
      return parts;
    case kShifts:
      return with_amounts(w, choose(w, {1, w / 2, w - 1}, 1, w - 1));
    case kFactors:
      if (w < 3) return {};
      return with_amounts(w, choose(w, {1, w / 2, w - 2}, 1, w - 2));
    case kNoShifts:
      return with_amounts(w, {0});
    case kFarShifts:
      return with_amounts(w, choose(w, {w, w + 1, get_largest_amount(w)}, w, get_largest_amount(w)));
    case kSignShifts:
      if (w == 1) return {};
      return with_amounts(w, choose(w, {w - 1, w, get_largest_amount(w)}, w - 1, get_largest_amount(w)));
  }
  return parts;
}

std::vector<unsigned long> list_rule_widths(const RuleRow& row, unsigned long max_width)
{
  std::vector<unsigned long> widths;
  for (unsigned long w = 0; w <= 16; ++w)
    widths.push_back(w);
  widths.insert(widths.end(), {31, 32, 33, 63, 64});
  std::erase_if(widths, [&](unsigned long w) {
    return (max_width != 0 && w > max_width) || list_instances(row, w).empty();
  });
  return widths;
}

RuleTerms read_rule(TermManager& mgr, const RuleRow& row, const RuleNumbers& numbers)
{
  const RuleText text(numbers);
  const auto read = [&](std::string_view term) { return parse_term(mgr, text.fill(term)); };
  return {read(row.old_form), read_definitions(mgr, text, row.steps), read(row.new_form),
          read_definitions(mgr, text, row.values),
          row.condition.empty() ? mgr.make_true() : read(row.condition)};
}

const Term* substitute(TermManager& mgr, const Term* t, std::span<const RuleDefinition> definitions)
{
  // A definition may need those before it, so the last one is replaced first.
  for (std::size_t i = definitions.size(); i-- > 0;)
    t = replace_constant(mgr, t, definitions[i]);
  return t;
}

std::vector<RuleClaim> make_claims(TermManager& mgr, const RuleTerms& terms)
{
  const Term* extended = substitute(mgr, terms.old_form, terms.values);
  const Term* defined = substitute(mgr, terms.new_form, terms.steps);
  std::vector<RuleClaim> claims = {
      {"the values", {terms.condition, make_difference(mgr, extended, terms.new_form)}, false},
      {"the steps", {terms.condition, make_difference(mgr, terms.old_form, defined)}, false},
  };
  if (terms.condition != mgr.make_true()) claims.push_back({"the condition", {terms.condition}, true});
  return claims;
}

std::ostream& operator<<(std::ostream& out, const RuleRow& row) { return out << row.name; }

}  // namespace lumo::test
