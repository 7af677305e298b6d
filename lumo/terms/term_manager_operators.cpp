// The operator symbols of a term manager: the check of their parameters, and their sorts.

#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

namespace {

/// Refuses an invalid width; `what` names the operand in the message.
void check_width(const OperatorInfo& info, const std::string& what, unsigned long w)
{
  if (w != 0 && w <= TermManager::kMaxWidth) return;
  throw Exception(std::string(info.smtlib_name) + " was requested for " + what + " of width " +
                  std::to_string(w) + ", but widths are 1 to " + std::to_string(TermManager::kMaxWidth));
}

/// Refuses a result that would be wider than the widest sort.
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

/// How many parameters the factory of an operator takes.
std::size_t count_parameters(SortRule rule)
{
  switch (rule) {
    case SortRule::kBool:
      return 0;
    case SortRule::kIte:
    case SortRule::kEq:
    case SortRule::kUniform:
    case SortRule::kPredicate:
    case SortRule::kComparison:
      return 1;
    case SortRule::kConcat:
    case SortRule::kRotate:
    case SortRule::kExtend:
      return 2;
    case SortRule::kExtract:
      return 3;
  }
  return 0;
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

const Symbol* TermManager::make_symbol(Kind kind, const Parameters& parameters)
{
  if (!is_operator(kind)) throw Exception("the symbol of a leaf was requested, but an operator was expected");
  const OperatorInfo& info = get_operator_info(kind);
  for (std::size_t i = count_parameters(info.rule); i < parameters.size(); ++i) {
    if (parameters[i] == 0) continue;
    throw Exception(std::string(info.smtlib_name) + " was requested with parameter " + std::to_string(i + 1) +
                    " set to " + std::to_string(parameters[i]) + ", but it takes " +
                    std::to_string(count_parameters(info.rule)));
  }
  if (info.rule == SortRule::kIte) return make_ite_symbol(make_type(parameters[0]));
  if (info.rule == SortRule::kEq) return make_eq_symbol(make_type(parameters[0]));
  return make_operator(kind, parameters);
}

const Symbol* TermManager::find_or_make_operator(Kind kind, const Parameters& parameters)
{
  const UniqueTable::Index known =
      operators_.find(hash_operator(kind, parameters), [this, kind, &parameters](UniqueTable::Index i) {
        const OperatorSymbol& candidate = operator_symbols_[i];
        return candidate.get_kind() == kind && is_same(candidate.get_parameters(), parameters);
      });
  if (known == UniqueTable::kNone) check_parameters(get_operator_info(kind), parameters);
  const OperatorSymbol* s =
      known != UniqueTable::kNone ? &operator_symbols_[known] : &make_fresh_operator(kind, parameters);
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
  operators_.insert(hash_operator(kind, parameters),
                    static_cast<UniqueTable::Index>(operator_symbols_.size() - 1));
  return s;
}

}  // namespace lumo
