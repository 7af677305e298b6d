#include "lumo/smtlib/theory_functions.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>
#include <unordered_map>

#include "lumo/smtlib/nearest_word.h"

namespace lumo::smtlib {

namespace {

constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();

constexpr TheoryFunction kFunctions[] = {
    // Arrays
    {"select", ResultRule::kSelect, 0, 2, 2, ForeignRole::kSelect},
    {"store", ResultRule::kStore, 0, 3, 3, ForeignRole::kStore},
    // Integers and reals
    {"+", ResultRule::kArithmetic, 0, 1, kAny},
    {"-", ResultRule::kArithmetic, 0, 1, kAny},
    {"*", ResultRule::kArithmetic, 0, 1, kAny},
    {"/", ResultRule::kReal, 0, 2, kAny},
    {"div", ResultRule::kInt, 0, 2, kAny},
    {"mod", ResultRule::kInt, 0, 2, 2},
    {"abs", ResultRule::kArithmetic, 0, 1, 1},
    {"<", ResultRule::kBool, 0, 2, kAny},
    {"<=", ResultRule::kBool, 0, 2, kAny},
    {">", ResultRule::kBool, 0, 2, kAny},
    {">=", ResultRule::kBool, 0, 2, kAny},
    {"divisible", ResultRule::kBool, 1, 1, 1},
    {"to_real", ResultRule::kReal, 0, 1, 1},
    {"to_int", ResultRule::kInt, 0, 1, 1},
    {"is_int", ResultRule::kBool, 0, 1, 1},
    {"bv2nat", ResultRule::kInt, 0, 1, 1},
    {"ubv_to_int", ResultRule::kInt, 0, 1, 1},
    {"sbv_to_int", ResultRule::kInt, 0, 1, 1},
    {"nat2bv", ResultRule::kBits, 1, 1, 1},
    {"int2bv", ResultRule::kBits, 1, 1, 1},
    {"int_to_bv", ResultRule::kBits, 1, 1, 1},
    // Floating-point numbers
    {"RNE", ResultRule::kRoundingMode, 0, 0, 0},
    {"RNA", ResultRule::kRoundingMode, 0, 0, 0},
    {"RTP", ResultRule::kRoundingMode, 0, 0, 0},
    {"RTN", ResultRule::kRoundingMode, 0, 0, 0},
    {"RTZ", ResultRule::kRoundingMode, 0, 0, 0},
    {"roundNearestTiesToEven", ResultRule::kRoundingMode, 0, 0, 0},
    {"roundNearestTiesToAway", ResultRule::kRoundingMode, 0, 0, 0},
    {"roundTowardPositive", ResultRule::kRoundingMode, 0, 0, 0},
    {"roundTowardNegative", ResultRule::kRoundingMode, 0, 0, 0},
    {"roundTowardZero", ResultRule::kRoundingMode, 0, 0, 0},
    {"fp", ResultRule::kFloatOfParts, 0, 3, 3},
    {"+oo", ResultRule::kFloat, 2, 0, 0},
    {"-oo", ResultRule::kFloat, 2, 0, 0},
    {"+zero", ResultRule::kFloat, 2, 0, 0},
    {"-zero", ResultRule::kFloat, 2, 0, 0},
    {"NaN", ResultRule::kFloat, 2, 0, 0},
    {"fp.abs", ResultRule::kFirst, 0, 1, 1},
    {"fp.neg", ResultRule::kFirst, 0, 1, 1},
    {"fp.add", ResultRule::kSecond, 0, 3, 3},
    {"fp.sub", ResultRule::kSecond, 0, 3, 3},
    {"fp.mul", ResultRule::kSecond, 0, 3, 3},
    {"fp.div", ResultRule::kSecond, 0, 3, 3},
    {"fp.fma", ResultRule::kSecond, 0, 4, 4},
    {"fp.sqrt", ResultRule::kSecond, 0, 2, 2},
    {"fp.rem", ResultRule::kFirst, 0, 2, 2},
    {"fp.roundToIntegral", ResultRule::kSecond, 0, 2, 2},
    {"fp.min", ResultRule::kFirst, 0, 2, 2},
    {"fp.max", ResultRule::kFirst, 0, 2, 2},
    {"fp.leq", ResultRule::kBool, 0, 2, kAny},
    {"fp.lt", ResultRule::kBool, 0, 2, kAny},
    {"fp.geq", ResultRule::kBool, 0, 2, kAny},
    {"fp.gt", ResultRule::kBool, 0, 2, kAny},
    {"fp.eq", ResultRule::kBool, 0, 2, kAny},
    {"fp.isNormal", ResultRule::kBool, 0, 1, 1},
    {"fp.isSubnormal", ResultRule::kBool, 0, 1, 1},
    {"fp.isZero", ResultRule::kBool, 0, 1, 1},
    {"fp.isInfinite", ResultRule::kBool, 0, 1, 1},
    {"fp.isNaN", ResultRule::kBool, 0, 1, 1},
    {"fp.isNegative", ResultRule::kBool, 0, 1, 1},
    {"fp.isPositive", ResultRule::kBool, 0, 1, 1},
    {"to_fp", ResultRule::kFloat, 2, 1, 2},
    {"to_fp_unsigned", ResultRule::kFloat, 2, 2, 2},
    {"fp.to_ubv", ResultRule::kBits, 1, 2, 2},
    {"fp.to_sbv", ResultRule::kBits, 1, 2, 2},
    {"fp.to_real", ResultRule::kReal, 0, 1, 1},
    {"fp.to_ieee_bv", ResultRule::kBitsOfFloat, 0, 1, 1},
    // Strings
    {"str.++", ResultRule::kString, 0, 1, kAny},
    {"str.len", ResultRule::kInt, 0, 1, 1},
    {"str.<", ResultRule::kBool, 0, 2, kAny},
    {"str.<=", ResultRule::kBool, 0, 2, kAny},
    {"str.at", ResultRule::kString, 0, 2, 2},
    {"str.substr", ResultRule::kString, 0, 3, 3},
    {"str.prefixof", ResultRule::kBool, 0, 2, 2},
    {"str.suffixof", ResultRule::kBool, 0, 2, 2},
    {"str.contains", ResultRule::kBool, 0, 2, 2},
    {"str.indexof", ResultRule::kInt, 0, 3, 3},
    {"str.replace", ResultRule::kString, 0, 3, 3},
    {"str.replace_all", ResultRule::kString, 0, 3, 3},
    {"str.replace_re", ResultRule::kString, 0, 3, 3},
    {"str.replace_re_all", ResultRule::kString, 0, 3, 3},
    {"str.is_digit", ResultRule::kBool, 0, 1, 1},
    {"str.to_code", ResultRule::kInt, 0, 1, 1},
    {"str.from_code", ResultRule::kString, 0, 1, 1},
    {"str.to_int", ResultRule::kInt, 0, 1, 1},
    {"str.from_int", ResultRule::kString, 0, 1, 1},
    {"str.in_re", ResultRule::kBool, 0, 2, 2},
    {"str.to_re", ResultRule::kRegularLanguage, 0, 1, 1},
    {"re.none", ResultRule::kRegularLanguage, 0, 0, 0},
    {"re.all", ResultRule::kRegularLanguage, 0, 0, 0},
    {"re.allchar", ResultRule::kRegularLanguage, 0, 0, 0},
    {"re.++", ResultRule::kRegularLanguage, 0, 1, kAny},
    {"re.union", ResultRule::kRegularLanguage, 0, 1, kAny},
    {"re.inter", ResultRule::kRegularLanguage, 0, 1, kAny},
    {"re.*", ResultRule::kRegularLanguage, 0, 1, 1},
    {"re.+", ResultRule::kRegularLanguage, 0, 1, 1},
    {"re.opt", ResultRule::kRegularLanguage, 0, 1, 1},
    {"re.comp", ResultRule::kRegularLanguage, 0, 1, 1},
    {"re.diff", ResultRule::kRegularLanguage, 0, 1, kAny},
    {"re.range", ResultRule::kRegularLanguage, 0, 2, 2},
    {"re.^", ResultRule::kRegularLanguage, 1, 1, 1},
    {"re.loop", ResultRule::kRegularLanguage, 2, 1, 1},
};

constexpr std::string_view kSorts[] = {"Int", "Real", "RegLan", "RoundingMode", "String"};

const DataType* find_array_part(Sorts args, ResultRule rule)
{
  const ForeignSort* array = as_array(args[0]);
  if (array == nullptr || !can_stand_for(args[1], array->get_args()[0])) return nullptr;
  if (rule == ResultRule::kSelect) return array->get_args()[1];
  return can_stand_for(args[2], array->get_args()[1]) ? args[0] : nullptr;
}

const DataType* find_sort_of_parts(ForeignSortTable& sorts, Sorts args)
{
  for (const DataType* part : args) {
    if (!part->is_bit_vector()) return nullptr;
  }
  return sorts.make_floating_point(args[1]->get_width(), args[2]->get_width() + 1);
}

const DataType* find_bits_of_float(TermManager& mgr, const DataType* sort)
{
  constexpr std::string_view kStart = "(_ FloatingPoint ";
  const ForeignSort* foreign = as_foreign(sort);
  if (foreign == nullptr || !foreign->get_head().starts_with(kStart)) return nullptr;
  const std::string& head = foreign->get_head();
  unsigned long exponent = 0;
  unsigned long significand = 0;
  const char* end = head.data() + head.size();
  const char* next = std::from_chars(head.data() + kStart.size(), end, exponent).ptr;
  std::from_chars(next + 1, end, significand);
  return mgr.make_bv_type(exponent + significand);
}

}  // namespace

const TheoryFunction* find_theory_function(std::string_view name)
{
  static const auto kByName = [] {
    std::unordered_map<std::string_view, const TheoryFunction*> by_name;
    for (const TheoryFunction& function : kFunctions)
      by_name.emplace(function.name, &function);
    return by_name;
  }();
  const auto place = kByName.find(name);
  return place == kByName.end() ? nullptr : place->second;
}

std::size_t find_nearest_theory_function(std::string_view name, std::string_view& nearest)
{
  std::size_t least = kNotNear;
  for (const TheoryFunction& function : kFunctions) {
    const std::size_t distance = measure_word(name, function.name);
    if (distance >= least) continue;
    nearest = function.name;
    least = distance;
  }
  return least;
}

const DataType* find_result_sort(TermManager& mgr, ForeignSortTable& sorts, const TheoryFunction& function,
                                 std::span<const unsigned long> indices, Sorts args)
{
  if (args.size() < function.min_args || args.size() > function.max_args) return nullptr;
  switch (function.rule) {
    case ResultRule::kBool:
      return mgr.make_bool_type();
    case ResultRule::kInt:
      return sorts.make("Int", {});
    case ResultRule::kReal:
      return sorts.make("Real", {});
    case ResultRule::kString:
      return sorts.make("String", {});
    case ResultRule::kRegularLanguage:
      return sorts.make("RegLan", {});
    case ResultRule::kRoundingMode:
      return sorts.make("RoundingMode", {});
    case ResultRule::kArithmetic: {
      const DataType* real = sorts.make("Real", {});
      const DataType* integer = sorts.make("Int", {});
      const bool are_numbers = std::all_of(
          args.begin(), args.end(), [&](const DataType* arg) { return arg == real || arg == integer; });
      if (!are_numbers) return nullptr;
      return std::find(args.begin(), args.end(), real) != args.end() ? real : integer;
    }
    case ResultRule::kFirst:
      return args[0]->is_opaque() ? args[0] : nullptr;
    case ResultRule::kSecond:
      return args[1]->is_opaque() ? args[1] : nullptr;
    case ResultRule::kSelect:
    case ResultRule::kStore:
      return find_array_part(args, function.rule);
    case ResultRule::kBits:
      return mgr.make_bv_type(indices[0]);
    case ResultRule::kFloat:
      return sorts.make_floating_point(indices[0], indices[1]);
    case ResultRule::kFloatOfParts:
      return find_sort_of_parts(sorts, args);
    case ResultRule::kBitsOfFloat:
      break;
  }
  return find_bits_of_float(mgr, args[0]);
}

bool can_stand_for(const DataType* found, const DataType* expected)
{
  return found == expected || (is_sort(found, "Int") && is_sort(expected, "Real"));
}

std::string_view find_theory_sort(std::string_view name)
{
  constexpr std::pair<std::string_view, std::string_view> kFloats[] = {
      {"Float16", "(_ FloatingPoint 5 11)"},
      {"Float32", "(_ FloatingPoint 8 24)"},
      {"Float64", "(_ FloatingPoint 11 53)"},
      {"Float128", "(_ FloatingPoint 15 113)"},
  };
  for (const std::string_view sort : kSorts) {
    if (sort == name) return sort;
  }
  for (const auto& [alias, sort] : kFloats) {
    if (alias == name) return sort;
  }
  return {};
}

}  // namespace lumo::smtlib
