#include "lumo/smtlib/foreign_evaluation.h"

namespace lumo::smtlib {

namespace {

ForeignValue select(std::span<const ForeignValue> args)
{
  if (args[0].array == nullptr || args[1].scalar == nullptr) return {};
  return args[0].array->select(args[1].scalar);
}

ForeignValue store(std::span<const ForeignValue> args)
{
  if (args[0].array == nullptr || args[1].scalar == nullptr || !args[2].is_known()) return {};
  return {nullptr, std::make_shared<const ArrayValue>(args[0].array->store(args[1].scalar, args[2]))};
}

ForeignValue choose(TermManager& mgr, std::span<const ForeignValue> args)
{
  if (args[0].scalar == nullptr) return {};
  return args[0].scalar == mgr.make_true() ? args[1] : args[2];
}

/// Whether neighbours, or for `distinct` all pairs, are equal or differ.
ForeignValue compare(TermManager& mgr, std::span<const ForeignValue> args, const DataType* sort,
                     bool is_distinct)
{
  bool is_known = true;
  for (std::size_t i = 0; i + 1 < args.size(); ++i) {
    const std::size_t end = is_distinct ? args.size() : i + 2;
    for (std::size_t j = i + 1; j < end; ++j) {
      const std::optional<bool> are_same = are_equal(args[i], args[j], sort);
      if (are_same.has_value() && *are_same == is_distinct) return {mgr.make_false()};
      is_known = is_known && are_same.has_value();
    }
  }
  return is_known ? ForeignValue{mgr.make_true()} : ForeignValue{};
}

}  // namespace

ForeignValue apply_theory(TermManager& mgr, const ForeignTerms& terms, ForeignTerms::Index term,
                          std::span<const ForeignValue> args)
{
  const ForeignRole role = terms.get_head_of(term).role;
  switch (role) {
    case ForeignRole::kSelect:
      return select(args);
    case ForeignRole::kStore:
      return store(args);
    case ForeignRole::kConstantArray:
      if (!args[0].is_known()) return {};
      return {nullptr, std::make_shared<const ArrayValue>(args[0])};
    case ForeignRole::kIte:
      return choose(mgr, args);
    case ForeignRole::kEqual:
    case ForeignRole::kDistinct:
      return compare(mgr, args, terms.get_args(term)[0]->get_sort(), role == ForeignRole::kDistinct);
    case ForeignRole::kDeclared:
    case ForeignRole::kBinder:
    case ForeignRole::kOther:
      break;
  }
  return {};
}

void ForeignEvaluation::trust(ForeignTerms::Index term, const Term* value)
{
  take(term, {value}, Source::kSolver);
}

void ForeignEvaluation::take(ForeignTerms::Index term, const ForeignValue& value, Source source)
{
  values_[term] = value;
  sources_[term] = value.is_known() ? source : Source::kUnknown;
  const Term* placeholder = terms_.get_placeholder(term);
  if (value.scalar != nullptr && !placeholder->get_sort()->is_opaque())
    store_.set_value(placeholder, value.scalar);
}

ForeignValue ForeignEvaluation::get_value(const Term* t)
{
  if (!t->get_sort()->is_opaque()) return {store_.get_value(t)};
  return values_[terms_.find(t)];
}

ForeignValue ForeignEvaluation::compute(ForeignTerms::Index term, std::span<const Term* const> args)
{
  std::vector<ForeignValue> values;
  values.reserve(args.size());
  for (const Term* arg : args)
    values.push_back(get_value(arg));
  const ForeignHead& head = terms_.get_head_of(term);
  TermManager& mgr = *store_.get_manager();
  if (head.role != ForeignRole::kDeclared) return apply_theory(mgr, terms_, term, values);
  if (model_.defines(head.function->name)) return model_.apply(head.function->name, values);
  return model_.make_default(head.function->result);
}

void ForeignEvaluation::evaluate_rest(const ForeignForms& forms)
{
  std::vector<const Term*> args;
  for (const ForeignTerms::Index term : order_) {
    args.clear();
    for (std::size_t i = 0; i < terms_.get_args(term).size(); ++i)
      args.push_back(forms.get_arg(term, i));
    const ForeignValue value = compute(term, args);
    if (value.is_known()) take(term, value, Source::kComputed);
  }
}

bool ForeignEvaluation::has_same_args(ForeignTerms::Index term, const ForeignForms& forms,
                                      const std::vector<bool>& is_same)
{
  const std::span<const Term* const> args = terms_.get_args(term);
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i]->get_sort()->is_opaque()) {
      if (!is_same[terms_.find(args[i])]) return false;
    } else if (store_.get_value(args[i]) != store_.get_value(forms.get_arg(term, i))) {
      return false;
    }
  }
  return true;
}

void ForeignEvaluation::evaluate_script(const ForeignForms& forms)
{
  std::vector<bool> is_same(terms_.size());
  for (const ForeignTerms::Index term : order_) {
    is_same[term] = has_same_args(term, forms, is_same);
    const ForeignValue value = compute(term, terms_.get_args(term));
    if (value.is_known()) {
      take(term, value, Source::kComputed);
    } else if (!is_same[term]) {
      take(term, {}, Source::kUnknown);
    }
  }
}

}  // namespace lumo::smtlib
