#include "tests/smtlib/z3_judge.h"

#include <sstream>
#include <stdexcept>

#include "lumo/numbers/bvnumber.h"
#include "lumo/smtlib/symbol_text.h"
#include "tests/support/gmp_number.h"

namespace lumo::test {

namespace {

z3::expr_vector parse(z3::context& z3, const std::string& text)
{
  Z3_toggle_warning_messages(false);  // about attributes that Z3 does not know
  return z3.parse_string(text.c_str());
}

}  // namespace

Z3Judge::Z3Judge(const std::string& text)
    : model_(&mgr_), script_(smtlib::read_script(mgr_, text)), assertions_(parse(z3_, text))
{
  if (assertions_.size() != script_.assertions.size())
    throw std::logic_error("the numbers of assertions differ");
}

std::string Z3Judge::find_difference(Random& random)
{
  z3::expr_vector constants(z3_);
  z3::expr_vector values(z3_);
  ModelStore::DefinitionStack definitions;
  for (const Term* constant : script_.constants) {
    const Term* value = make_random_value(mgr_, constant->get_symbol()->get_output_type(), random);
    definitions.push({constant, value, true});
    constants.push_back(make_constant(constant));
    values.push_back(make_value(value));
  }
  model_.replay(definitions);
  std::string difference;
  for (std::size_t i = 0; i < script_.assertions.size() && difference.empty(); ++i)
    difference = compare(i, constants, values);
  return difference;
}

std::string Z3Judge::compare(std::size_t i, const z3::expr_vector& constants, const z3::expr_vector& values)
{
  const Term* term = script_.assertions[i].term;
  z3::expr expression = assertions_[static_cast<int>(i)];
  const Kind kind = term->get_symbol()->get_kind();
  if ((kind == Kind::kEq || kind == Kind::kIff) && expression.decl().decl_kind() == Z3_OP_EQ) {
    term = term->get_arg(0);
    expression = expression.arg(0);
  }
  const z3::expr expected = expression.substitute(constants, values).simplify();
  const Term* found = model_.get_value(term);
  if (z3::eq(make_value(found), expected)) return {};
  std::ostringstream difference;
  difference << assertions_[static_cast<int>(i)] << "\nunder " << values << "\nis for lumo "
             << found->get_symbol()->get_name() << "\nand for Z3 " << expected;
  return difference.str();
}

z3::expr Z3Judge::make_constant(const Term* constant)
{
  // Through the parser, which knows names that the interface cannot make, such as the empty one
  const std::string name = smtlib::make_symbol_text(constant->get_symbol()->get_name());
  const std::string sort = constant->get_symbol()->get_output_type()->to_string();
  const std::string text = "(declare-const " + name + " " + sort + ")(assert (= " + name + " " + name + "))";
  return z3_.parse_string(text.c_str())[0].arg(0);
}

z3::expr Z3Judge::make_value(const Term* value)
{
  QNumber number;
  if (!mgr_.is_number(value->get_symbol(), &number)) return z3_.bool_val(value == mgr_.make_true());
  return z3_.bv_val(number.to_string().c_str(),
                    static_cast<unsigned>(value->get_symbol()->get_output_type()->get_width()));
}

const Term* make_random_value(TermManager& mgr, const DataType* sort, Random& random)
{
  if (sort->is_bool()) return random.flip() ? mgr.make_true() : mgr.make_false();
  Integer number;
  random.natural(number, sort->get_width());
  if (random.one_in(4)) mpz_neg(number, number);
  return mgr.make_bv_number(BVNumber::from_integer(number), sort->get_width());
}

}  // namespace lumo::test
