#include "lumo/smtlib/value_table.h"

#include <algorithm>

#include "lumo/numbers/hash_mix.h"
#include "lumo/terms/fold.h"

namespace lumo::smtlib {

namespace {

/// Reads the cases of a body.
class TableReader
{
 public:
  TableReader(TermManager& mgr, const ForeignTerms& terms, std::span<const Term* const> parameters)
      : mgr_(mgr), terms_(terms), parameters_(parameters)
  {}

  std::optional<ValueTable> read(const Term* body);

 private:
  /// The arguments of an application of this kind, foreign or not; empty if it is none.
  [[nodiscard]] std::span<const Term* const> match(const Term* t, std::initializer_list<Kind> kinds,
                                                   ForeignRole role) const;
  [[nodiscard]] bool is_element(const Term* t) const;
  /// Fills `case_` by what a condition says; false if it says something else.
  [[nodiscard]] bool read_condition(const Term* condition);
  [[nodiscard]] bool read_equation(const Term* equation);
  [[nodiscard]] bool note(const Term* parameter, const Term* value);

  TermManager& mgr_;
  const ForeignTerms& terms_;
  std::span<const Term* const> parameters_;
  std::vector<const Term*> case_;
};

std::span<const Term* const> TableReader::match(const Term* t, std::initializer_list<Kind> kinds,
                                                ForeignRole role) const
{
  const Kind kind = t->get_symbol()->get_kind();
  if (std::find(kinds.begin(), kinds.end(), kind) != kinds.end()) return t->get_args();
  const ForeignTerms::Index foreign = terms_.find(t);
  if (foreign == ForeignTerms::kNone || terms_.get_head_of(foreign).role != role) return {};
  return terms_.get_args(foreign);
}

/// Whether the term is a value: a literal, or the name of an element of a declared sort.
bool TableReader::is_element(const Term* t) const
{
  if (is_value(mgr_, t)) return true;
  const ForeignTerms::Index foreign = terms_.find(t);
  return foreign != ForeignTerms::kNone && terms_.get_args(foreign).empty() &&
         terms_.get_head_of(foreign).role == ForeignRole::kDeclared && as_array(t->get_sort()) == nullptr;
}

bool TableReader::note(const Term* parameter, const Term* value)
{
  const auto place = std::find(parameters_.begin(), parameters_.end(), parameter);
  if (place == parameters_.end() || !is_element(value)) return false;
  const Term*& known = case_[static_cast<std::size_t>(place - parameters_.begin())];
  if (known != nullptr && known != value) return false;
  known = value;
  return true;
}

bool TableReader::read_equation(const Term* equation)
{
  if (note(equation, mgr_.make_true())) return true;
  if (equation->get_symbol()->get_kind() == Kind::kNot) return note(equation->get_arg(0), mgr_.make_false());
  const std::span<const Term* const> sides = match(equation, {Kind::kEq, Kind::kIff}, ForeignRole::kEqual);
  return sides.size() == 2 && (note(sides[0], sides[1]) || note(sides[1], sides[0]));
}

bool TableReader::read_condition(const Term* condition)
{
  case_.assign(parameters_.size(), nullptr);
  std::vector<const Term*> open{condition};
  while (!open.empty()) {
    const Term* t = open.back();
    open.pop_back();
    if (t->get_symbol()->get_kind() == Kind::kAnd) {
      open.push_back(t->get_arg(1));
      open.push_back(t->get_arg(0));
    } else if (!read_equation(t)) {
      return false;
    }
  }
  return std::find(case_.begin(), case_.end(), nullptr) == case_.end();
}

std::optional<ValueTable> TableReader::read(const Term* body)
{
  ValueTable table;
  for (;;) {
    const std::span<const Term* const> parts = match(body, {Kind::kIte}, ForeignRole::kIte);
    if (parts.empty()) break;
    if (!read_condition(parts[0]) || !is_element(parts[1])) return std::nullopt;
    table.add(case_, parts[1]);
    body = parts[2];
  }
  if (!is_element(body)) return std::nullopt;
  table.set_default(body);
  return table;
}

}  // namespace

std::size_t ValueTable::Hash::operator()(const std::vector<const Term*>& args) const
{
  std::size_t hash = 0;
  for (const Term* arg : args)
    hash = mix_hash(hash, arg);
  return hash;
}

ForeignValue ValueTable::make_array() const
{
  ArrayValue array({default_});
  for (const auto& [args, value] : cases_)
    array = array.store(args[0], {value});
  return {nullptr, std::make_shared<const ArrayValue>(std::move(array))};
}

std::optional<ValueTable> make_value_table(TermManager& mgr, const ForeignTerms& terms,
                                           std::span<const Term* const> parameters, const Term* body)
{
  return TableReader(mgr, terms, parameters).read(body);
}

}  // namespace lumo::smtlib
