#include "lumo/smtlib/function_table.h"

#include "lumo/numbers/hash_mix.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

// Symbols of a text contain no control characters, so these names cannot conflict with them.
constexpr const char* kParameterPrefix = "\x01 parameter";
constexpr const char* kCallPrefix = "\x01 call";

}  // namespace

std::size_t FunctionTable::ApplicationHash::operator()(const Application& application) const
{
  std::size_t h = mix_hash(0, application.function);
  for (const Term* arg : application.args)
    h = mix_hash(h, arg);
  return h;
}

const Term* FunctionTable::get_parameter(std::size_t place, const DataType* sort)
{
  const Term*& parameter = parameters_[{place, sort}];
  if (parameter == nullptr) parameter = mgr_.make_fresh_constant(kParameterPrefix, sort);
  return parameter;
}

const Term* FunctionTable::make_call(const Function& function, Terms args)
{
  const auto [place, is_new] = calls_.try_emplace({&function, {args.begin(), args.end()}}, nullptr);
  if (is_new) {
    place->second = mgr_.make_fresh_constant(kCallPrefix, function.get_result_sort());
    applications_.emplace(place->second, &place->first);
  }
  return place->second;
}

// -----------------------------------------------------------------------------------------------------------
// Definitions

const Function* FunctionTable::define(std::string_view name, const std::vector<const DataType*>& parameters,
                                      const Term* body)
{
  Function& function = functions_.emplace_back();
  function.name_ = name;
  function.parameters_ = parameters;
  function.result_ = body->get_symbol()->get_output_type();
  Places places;
  for (std::size_t i = 0; i < parameters.size(); ++i)
    places.emplace(get_parameter(i, parameters[i]), static_cast<Function::Place>(i));
  add_steps(function, body, places);
  function.body_ = make_operand(body, places);
  return &function;
}

void FunctionTable::open(const Term* t, const Places& places)
{
  if (places.contains(t) || closed_.contains(t)) return;
  const auto call = applications_.find(t);
  if (call != applications_.end()) {
    visits_.push_back({t, call->second, ForeignTerms::kNone, 0});
  } else if (t->get_num_args() != 0) {
    visits_.push_back({t, nullptr, ForeignTerms::kNone, 0});
  } else if (const ForeignTerms::Index foreign = find_foreign(t); foreign != ForeignTerms::kNone) {
    visits_.push_back({t, nullptr, foreign, 0});
  }
}

FunctionTable::Terms FunctionTable::get_operands(const Visit& visit) const
{
  if (visit.call != nullptr) return visit.call->args;
  if (visit.foreign != ForeignTerms::kNone) return foreign_->get_args(visit.foreign);
  return visit.term->get_args();
}

void FunctionTable::add_steps(Function& function, const Term* body, Places& places)
{
  visits_.clear();
  open(body, places);
  while (!visits_.empty()) {
    Visit& visit = visits_.back();
    if (const Terms operands = get_operands(visit); visit.next < operands.size()) {
      open(operands[visit.next++], places);
    } else {
      const Visit done = visit;
      visits_.pop_back();
      if (!places.contains(done.term) && !closed_.contains(done.term)) add_step(function, done, places);
    }
  }
}

/// Adds a step for a term whose operands are known, or records that it does not depend on parameters.
void FunctionTable::add_step(Function& function, const Visit& visit, Places& places)
{
  const std::size_t first = function.operands_.size();
  bool is_open = visit.call != nullptr;
  for (const Term* operand : get_operands(visit)) {
    function.operands_.push_back(make_operand(operand, places));
    is_open = is_open || function.operands_.back().term == nullptr;
  }
  if (!is_open) {
    function.operands_.resize(first);
    closed_.insert(visit.term);
    return;
  }
  places.emplace(visit.term,
                 static_cast<Function::Place>(function.parameters_.size() + function.steps_.size()));
  const bool is_call = visit.call != nullptr;
  function.steps_.push_back(
      {is_call ? nullptr : visit.term->get_symbol(), is_call ? visit.call->function : nullptr, first,
       function.operands_.size() - first,
       visit.foreign == ForeignTerms::kNone ? 0 : foreign_->get_head_index(visit.foreign)});
}

Function::Operand FunctionTable::make_operand(const Term* t, const Places& places)
{
  const auto place = places.find(t);
  return place == places.end() ? Function::Operand{t, 0} : Function::Operand{nullptr, place->second};
}

// -----------------------------------------------------------------------------------------------------------
// Applications

const Term* FunctionTable::expand(const Function& function, Terms args)
{
  const Application wanted{&function, {args.begin(), args.end()}};
  if (const auto known = results_.find(wanted); known != results_.end()) return known->second;
  expansions_.clear();
  values_.clear();
  begin(wanted);
  while (!expansions_.empty())
    continue_expansion();
  return results_.find(wanted)->second;
}

void FunctionTable::begin(Application application)
{
  const std::size_t first = values_.size();
  values_.insert(values_.end(), application.args.begin(), application.args.end());
  expansions_.push_back({std::move(application), first, 0});
}

/// Continues the innermost expansion until it is complete or needs another one.
void FunctionTable::continue_expansion()
{
  Expansion& expansion = expansions_.back();
  const Function& function = *expansion.application.function;
  for (; expansion.next < function.steps_.size(); ++expansion.next) {
    const Function::Step& step = function.steps_[expansion.next];
    args_.clear();
    for (std::size_t i = 0; i < step.num_operands; ++i)
      args_.push_back(get_value(function.operands_[step.first + i], expansion.first));
    if (step.symbol != nullptr) {
      values_.push_back(make_value(step));
      continue;
    }
    Application needed{step.function, args_};
    const auto known = results_.find(needed);
    if (known == results_.end()) {
      begin(std::move(needed));
      return;
    }
    values_.push_back(known->second);
  }
  const Term* value = get_value(function.body_, expansion.first);
  values_.resize(expansion.first);
  results_.emplace(std::move(expansion.application), value);
  expansions_.pop_back();
}

const Term* FunctionTable::make_value(const Function::Step& step)
{
  if (is_operator(step.symbol->get_kind())) return make_term(step.symbol, args_);
  count_expanded();
  return foreign_->make(step.head, step.symbol->get_output_type(), args_);
}

const Term* FunctionTable::make_term(const Symbol* s, const std::vector<const Term*>& args)
{
  count_expanded();
  return mgr_.make_term(s, args);
}

void FunctionTable::count_expanded()
{
  if (++num_expanded_ <= kMaxExpansion) return;
  throw Exception("the definitions with parameters expand to more than " + std::to_string(kMaxExpansion) +
                  " applications, but at most that many were expected");
}

const Term* FunctionTable::get_value(const Function::Operand& operand, std::size_t first) const
{
  return operand.term != nullptr ? operand.term : values_[first + operand.place];
}

}  // namespace lumo::smtlib
