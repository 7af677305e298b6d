#include "tests/proof/proof_scene.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "lumo/calculators/calculator_table.h"
#include "lumo/terms/exception.h"
#include "tests/support/make_operator.h"

namespace lumo::test {

namespace {

using Definitions = std::vector<ModelStore::ModelDefinition>;
using solvers::Answer;

/// Up to this width a row with a middle is proven in one step, too; the work of some solvers grows fast.
constexpr unsigned long kMaxDirectWidth = 7;

/// The term with a leaf replaced by another term. For small terms.
const Term* replace(TermManager& mgr, const Term* t, const Term* leaf, const Term* replacement)
{
  if (t == leaf) return replacement;
  if (t->get_num_args() == 0) return t;
  std::vector<const Term*> args;
  for (std::size_t i = 0; i < t->get_num_args(); ++i)
    args.push_back(replace(mgr, t->get_arg(i), leaf, replacement));
  return mgr.make_term(t->get_symbol(), args);
}

const Term* make_operand(TermManager& mgr, const OperatorSymbol& s, char letter, std::size_t position)
{
  const std::string name = get_operand_name(s.get_arity(), position);
  const DataType* type = s.get_argument_type(position);
  switch (letter) {
    case 'n':
      return mgr.make_constant(name, type);
    case 'x':
      return mgr.make_constant("free_" + name, type);
    case 'e':
      return mgr.make_term(
          type->is_bool() ? mgr.make_not_symbol() : mgr.make_bv_not_symbol(type->get_width()),
          {mgr.make_constant("under_" + name, type)});
    default:
      throw std::logic_error("no shape");
  }
}

bool are_equal(const Definitions& lhs, const Definitions& rhs)
{
  return std::equal(lhs.begin(), lhs.end(), rhs.begin(), rhs.end(),
                    [](const auto& a, const auto& b) { return a.term == b.term && a.value == b.value; });
}

}  // namespace

std::optional<Definitions> call_calculator(TermManager& mgr, const Term* t, const Term* value)
{
  ModelStore::DefinitionStack stack;
  try {
    (*find_calculator(mgr, t->get_symbol()))(&mgr, t, value, stack);
  } catch (const Exception&) {
    if (!stack.empty()) throw std::logic_error("a refusal that pushed something");
    return std::nullopt;
  }
  Definitions definitions;
  for (; !stack.empty(); stack.pop())
    definitions.push_back(stack.top());
  std::reverse(definitions.begin(), definitions.end());
  return definitions;
}

std::vector<const Term*> make_operands(TermManager& mgr, const OperatorSymbol& s, std::string_view shape)
{
  std::vector<const Term*> operands;
  for (std::size_t i = 0; i < shape.size(); ++i)
    operands.push_back(make_operand(mgr, s, shape[i], i));
  return operands;
}

ProofScene::ProofScene(const ProofRow& row, const Parameters& parameters)
    : row_(row),
      symbol_(&as_operator(make_operator(mgr_, row.kind, parameters))),
      terms_(read_row(mgr_, row, *symbol_, false))
{}

Definitions ProofScene::make_definitions(std::string_view shape)
{
  if (row_.definitions.empty()) {
    Definitions definitions = take_definitions(shape, false);
    if (!are_equal(definitions, take_definitions(shape, true)))
      throw std::logic_error("the definitions depend on the numeral");
    return definitions;
  }
  const std::vector<const Term*> operands = make_operands(mgr_, *symbol_, shape);
  Definitions definitions;
  for (const auto& [position, value] : terms_.definitions)
    definitions.emplace_back(operands[position], value, true);
  return definitions;
}

/// Calls the calculator on the constant v, with 0 and false, or all ones and true, for operands that are n. In the
/// terms that it pushes, replaces these operands, and numerals everywhere, by the constants for them.
Definitions ProofScene::take_definitions(std::string_view shape, bool has_high_numerals)
{
  const std::vector<const Term*> operands = make_operands(mgr_, *symbol_, shape);
  std::vector<const Term*> args = operands;
  const Term* numeral = nullptr;
  std::size_t place = 0;
  for (std::size_t i = 0; i < shape.size(); ++i) {
    if (shape[i] != 'n') continue;
    const DataType* type = symbol_->get_argument_type(i);
    if (type->is_bool()) {
      args[i] = has_high_numerals ? mgr_.make_true() : mgr_.make_false();
    } else {
      if (numeral != nullptr) throw std::logic_error("two numerals");
      numeral = mgr_.make_bv_number(has_high_numerals ? -1 : 0, type->get_width());
      args[i] = numeral;
      place = i;
    }
  }
  const auto pushed = call_calculator(mgr_, mgr_.make_term(symbol_, args),
                                      mgr_.make_constant("v", symbol_->get_output_type()));
  if (!pushed) throw std::logic_error("the calculator refuses what the table says that it solves");

  Definitions definitions;
  for (const auto& [term, value, flag] : *pushed) {
    const auto place_of_term = std::find(args.begin(), args.end(), term);
    if (place_of_term == args.end()) throw std::logic_error("a definition of no operand");
    const auto i = static_cast<std::size_t>(place_of_term - args.begin());
    if (shape[i] == 'n') continue;
    definitions.emplace_back(
        operands[i], numeral == nullptr ? value : replace(mgr_, value, numeral, operands[place]), flag);
  }
  return definitions;
}

/// The application under the definitions. Operands that are n keep their own values, whatever the definitions say
/// about them.
const Term* ProofScene::make_claimed_application(std::string_view shape)
{
  std::vector<const Term*> args = make_operands(mgr_, *symbol_, shape);
  const Definitions definitions = make_definitions(shape);
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (shape[i] == 'n') continue;
    const auto found = std::find_if(definitions.begin(), definitions.end(),
                                    [&](const auto& definition) { return definition.term == args[i]; });
    if (found != definitions.end()) args[i] = found->value;
  }
  return mgr_.make_term(symbol_, args);
}

const Term* ProofScene::make_difference(const Term* lhs, const Term* rhs)
{
  const DataType* type = lhs->get_symbol()->get_output_type();
  const Symbol* equality = type->is_bool() ? mgr_.make_iff_symbol() : mgr_.make_eq_symbol(type);
  return mgr_.make_term(mgr_.make_not_symbol(), {mgr_.make_term(equality, {lhs, rhs})});
}

std::vector<ProofQuery> ProofScene::make_queries()
{
  std::vector<ProofQuery> queries;
  for (const std::string_view shape : split_words(row_.shapes))
    add_queries(queries, shape);
  return queries;
}

void ProofScene::add_queries(std::vector<ProofQuery>& queries, std::string_view shape)
{
  const auto add = [&](const char* what, std::vector<const Term*> assertions, Answer expected) {
    const bool is_known = std::any_of(queries.begin(), queries.end(), [&](const ProofQuery& query) {
      return query.assertions == assertions;
    });
    if (is_known) return;
    const std::string sort = symbol_->get_argument_type(0)->to_string();
    queries.push_back({std::string(shape) + " of " + symbol_->get_name() + " on " + sort + ": " + what,
                       std::move(assertions), expected});
  };
  const Term* t = make_claimed_application(shape);
  const Term* difference = make_difference(t, terms_.value);
  if (row_.standing == Standing::kUnsound) {
    add("another value", {terms_.condition, difference}, Answer::kSat);
    return;
  }
  if (terms_.middle == nullptr) {
    if (!row_.condition.empty()) add("condition", {terms_.condition}, Answer::kSat);
    add("another value", {terms_.condition, difference}, Answer::kUnsat);
    return;
  }
  const RowTerms abstract = read_row(mgr_, row_, *symbol_, true);
  add("condition", {abstract.condition}, Answer::kSat);
  add("another value than the middle", {make_difference(t, terms_.middle)}, Answer::kUnsat);
  add("another value of the middle", {abstract.condition, make_difference(abstract.middle, abstract.value)},
      Answer::kUnsat);
  if (symbol_->get_output_type()->get_width() <= kMaxDirectWidth)
    add("another value", {terms_.condition, difference}, Answer::kUnsat);
}

}  // namespace lumo::test
