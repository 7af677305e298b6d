#include "tests/calculators/enumeration.h"

#include "tests/support/numbered.h"

namespace lumo::test {

namespace {

std::vector<const Term*> enumerate_proper_values(TermManager& mgr, Reference& reference, const DataType* type)
{
  if (type->is_bool()) return {mgr.make_true(), mgr.make_false()};
  std::vector<const Term*> values;
  for (std::uint64_t n = 0; n < (std::uint64_t{1} << type->get_width()); ++n) {
    values.push_back(reference.make_number(n, type->get_width()));
  }
  return values;
}

const Term* make_constant(TermManager& mgr, const std::string& name, const DataType* type)
{
  return mgr.make_constant(numbered(name + "_", type->get_width()), type);
}

const Term* make_compound(TermManager& mgr, const std::string& name, const DataType* type)
{
  const Term* inner = make_constant(mgr, name, type);
  return mgr.make_term(type->is_bool() ? mgr.make_not_symbol() : mgr.make_bv_not_symbol(type->get_width()),
                       {inner});
}

std::vector<const Term*> enumerate_arguments(TermManager& mgr, Reference& reference, const DataType* type,
                                             std::size_t position)
{
  std::vector<const Term*> arguments = enumerate_proper_values(mgr, reference, type);
  arguments.push_back(make_constant(mgr, numbered("x", position), type));
  if (position > 0) arguments.push_back(make_constant(mgr, "x0", type));
  arguments.push_back(make_compound(mgr, numbered("u", position), type));
  return arguments;
}

}  // namespace

std::vector<Parameters> enumerate_parameters(Kind kind, unsigned long w)
{
  constexpr unsigned long kOther = 3;
  std::vector<Parameters> all;
  switch (get_operator_info(kind).rule) {
    case SortRule::kBool:
      return {{}};
    case SortRule::kIte:
      return {{0}, {w}};
    case SortRule::kEq:
    case SortRule::kUniform:
    case SortRule::kPredicate:
    case SortRule::kComparison:
      return {{w}};
    case SortRule::kConcat:
      for (unsigned long other = 1; other <= kOther; ++other)
        all.push_back({w, other});
      return all;
    case SortRule::kExtract:
      for (unsigned long msb = 0; msb < w; ++msb) {
        for (unsigned long lsb = 0; lsb <= msb; ++lsb)
          all.push_back({msb, lsb, w});
      }
      return all;
    case SortRule::kRotate:
      for (unsigned long k = 0; k <= 2 * w; ++k)
        all.push_back({k, w});
      return all;
    case SortRule::kExtend:
      for (unsigned long k = 0; k <= kOther; ++k)
        all.push_back({k, w});
      return all;
  }
  return all;
}

void for_each_application(TermManager& mgr, Reference& reference, const Symbol* s,
                          const std::function<void(const Term*)>& visit)
{
  std::vector<std::vector<const Term*>> menus;
  for (std::size_t i = 0; i < s->get_arity(); ++i) {
    menus.push_back(enumerate_arguments(mgr, reference, as_operator(s).get_argument_type(i), i));
  }
  std::vector<std::size_t> choice(menus.size(), 0);
  for (;;) {
    std::vector<const Term*> args;
    for (std::size_t i = 0; i < menus.size(); ++i)
      args.push_back(menus[i][choice[i]]);
    visit(mgr.make_term(s, args));
    std::size_t i = 0;
    while (i < menus.size() && ++choice[i] == menus[i].size())
      choice[i++] = 0;
    if (i == menus.size()) return;
  }
}

std::vector<const Term*> enumerate_values(TermManager& mgr, Reference& reference, const DataType* type)
{
  std::vector<const Term*> values = enumerate_proper_values(mgr, reference, type);
  values.push_back(make_constant(mgr, "z", type));
  values.push_back(make_compound(mgr, "z", type));
  if (type->is_bool()) {
    values.push_back(reference.make_number(1, 1));
  } else {
    values.insert(values.end(),
                  {mgr.make_true(), mgr.make_false(), make_constant(mgr, "z", mgr.make_bool_type())});
  }
  return values;
}

bool is_value_of(const Reference& reference, TermManager& mgr, const Term* t, const DataType* type)
{
  if (t->get_symbol()->get_output_type() != type) return false;
  return type->is_bool() ? t == mgr.make_true() || t == mgr.make_false() : reference.is_known_number(t);
}

std::string describe(const Term* t)
{
  std::string text = t->get_symbol()->get_name();
  for (std::size_t i = 0; i < t->get_num_args(); ++i) {
    text += ' ';
    text += describe(t->get_arg(i));
  }
  if (t->get_num_args() == 0) return text;
  text.insert(text.begin(), '(');
  text += ')';
  return text;
}

}  // namespace lumo::test
