#include "tests/support/notation.h"

#include <string>
#include <vector>

#include "lumo/numbers/bvnumber.h"
#include "tests/support/gmp_number.h"
#include "tests/support/make_operator.h"
#include "tests/support/notation_parser.h"

namespace lumo::test {

namespace {

class Builder
{
 public:
  explicit Builder(TermManager& mgr) : mgr_(mgr) {}

  const Term* make_truth_value(bool b) { return b ? mgr_.make_true() : mgr_.make_false(); }
  const Term* make_constant(const std::string& name, unsigned long width)
  {
    return mgr_.make_constant(name, width == 0 ? mgr_.make_bool_type() : mgr_.make_bv_type(width));
  }
  const Term* make_numeral(const std::string& digits, int base, unsigned long width)
  {
    Integer value;
    if (mpz_set_str(value, digits.c_str(), base) != 0)
      throw std::invalid_argument("malformed numeral " + digits);
    return mgr_.make_bv_number(BVNumber::from_integer(value), width);
  }
  const Term* apply(Kind kind, const Parameters& parameters, const std::vector<const Term*>& args)
  {
    return mgr_.make_term(make_operator(mgr_, kind, parameters), args);
  }
  static unsigned long get_width(const Term* t) { return t->get_symbol()->get_output_type()->get_width(); }

 private:
  TermManager& mgr_;
};

}  // namespace

const Term* parse_term(TermManager& mgr, std::string_view text)
{
  Builder builder(mgr);
  return NotationParser(builder, text).parse_all();
}

}  // namespace lumo::test
