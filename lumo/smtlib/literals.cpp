#include "lumo/smtlib/literals.h"

#include <string>

#include <gmp.h>

#include "lumo/numbers/bvnumber.h"

namespace lumo::smtlib {

namespace {

/// An integer that cleans up after itself
struct Integer
{
  Integer(const char* digits, int base) { mpz_init_set_str(value, digits, base); }
  Integer(const Integer&) = delete;
  Integer& operator=(const Integer&) = delete;
  ~Integer() { mpz_clear(value); }

  mpz_t value;
};

}  // namespace

const Term* make_numeral(TermManager& mgr, std::string_view digits, int base, unsigned long w)
{
  const Integer integer(std::string(digits).c_str(), base);
  return mgr.make_bv_number(BVNumber::from_integer(integer.value), w);
}

}  // namespace lumo::smtlib
