// The operator symbols of a term manager: which parameters make sense, and which sorts follow from them.

#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

namespace {

/// Refuse a width that no sort has; `what` says whose width it is.
void check_width(const OperatorInfo& info, const std::string& what, unsigned long w)
{
  if (w != 0 && w <= TermManager::kMaxWidth) return;
  throw Exception(std::string(info.smtlib_name) + " was requested for " + what + " of width " +
                  std::to_string(w) + ", but widths are 1 to " + std::to_string(TermManager::kMaxWidth));
}

/// Refuse a result that would be wider than a sort can be; the parts are not empty, or were checked to be
/// none.
void check_sum(const OperatorInfo& info, unsigned long part, unsigned long other)
{
  if (part <= TermManager::kMaxWidth - other) return;
  throw Exception(std::string(info.smtlib_name) + " was requested with " + std::to_string(part) + " and " +
                  std::to_string(other) + " bits, but together they may be at most " +
                  std::to_string(TermManager::kMaxWidth));
}

void check_extract(unsigned long msb, unsigned long lsb, unsigned long w)
{
  if (lsb <= msb && msb < w) return;
  throw Exception("extract was requested for bits " + std::to_string(msb) + " down to " +
                  std::to_string(lsb) + " of an operand of width " + std::to_string(w) + ", but " +
                  (lsb > msb ? "the first bit must not be below the second"
                             : "the first bit must be below " + std::to_string(w)));
}

void check_parameters(const OperatorInfo& info, const Parameters& p)
{
  switch (info.rule) {
    case SortRule::kBool:
    case SortRule::kIte:
    case SortRule::kEq:
      return;
    case SortRule::kUniform:
    case SortRule::kPredicate:
    case SortRule::kComparison:
      check_width(info, "operands", p[0]);
      return;
    case SortRule::kConcat:
      check_width(info, "a first operand", p[0]);
      check_width(info, "a second operand", p[1]);
      check_sum(info, p[0], p[1]);
      return;
    case SortRule::kExtract:
      check_width(info, "an operand", p[2]);
      check_extract(p[0], p[1], p[2]);
      return;
    case SortRule::kRotate:
      check_width(info, "an operand", p[1]);
      return;
    case SortRule::kExtend:
      check_width(info, "an operand", p[1]);
      check_sum(info, p[0], p[1]);
      return;
  }
}

}  // namespace

const Symbol* TermManager::make_ite_symbol(const DataType* type)
{
  check_own_type(type);
  return make_operator(Kind::kIte, {type->get_width()});
}

const Symbol* TermManager::make_eq_symbol(const DataType* type)
{
  check_own_type(type);
  if (type->is_bool()) {
    throw Exception(
        "an equality symbol for sort Bool was requested, but a bit-vector sort was expected: equality of "
        "Booleans is iff");
  }
  return make_operator(Kind::kEq, {type->get_width()});
}

const Symbol* TermManager::find_or_make_operator(Kind kind, const Parameters& parameters)
{
  const OperatorSymbol* s =
      operators_.find(hash_operator(kind, parameters), [kind, &parameters](const OperatorSymbol& candidate) {
        return candidate.get_kind() == kind && is_same(candidate.get_parameters(), parameters);
      });
  if (s == nullptr) {
    check_parameters(get_operator_info(kind), parameters);
    s = &make_fresh_operator(kind, parameters);
  }
  recent_operators_[get_place(kind, parameters)] = s;
  return s;
}

const OperatorSymbol& TermManager::make_fresh_operator(Kind kind, const Parameters& parameters)
{
  const auto& [p0, p1, p2] = parameters;
  const DataType* result = make_bool_type();
  OperatorSymbol::ArgumentTypes args{};
  switch (get_operator_info(kind).rule) {
    case SortRule::kBool:
      args.fill(result);
      break;
    case SortRule::kIte:
      args = {make_bool_type(), make_type(p0), make_type(p0)};
      result = args[1];
      break;
    case SortRule::kEq:
    case SortRule::kPredicate:
      args.fill(make_bv_type(p0));
      break;
    case SortRule::kUniform:
      args.fill(make_bv_type(p0));
      result = args[0];
      break;
    case SortRule::kComparison:
      args.fill(make_bv_type(p0));
      result = make_bv_type(1);
      break;
    case SortRule::kConcat:
      args = {make_bv_type(p0), make_bv_type(p1)};
      result = make_bv_type(p0 + p1);
      break;
    case SortRule::kExtract:
      args.fill(make_bv_type(p2));
      result = make_bv_type(p0 - p1 + 1);
      break;
    case SortRule::kRotate:
      args.fill(make_bv_type(p1));
      result = args[0];
      break;
    case SortRule::kExtend:
      args.fill(make_bv_type(p1));
      result = make_bv_type(p0 + p1);
      break;
  }
  operators_.reserve_one();
  const OperatorSymbol& s = operator_symbols_.emplace_back(TermManagerKey(), kind, result, args, parameters);
  operators_.insert(hash_operator(kind, parameters), &s);
  return s;
}

}  // namespace lumo
