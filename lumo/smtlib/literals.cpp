#include "lumo/smtlib/literals.h"

#include <algorithm>
#include <charconv>
#include <string>

#include <gmp.h>

#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/characters.h"

namespace lumo::smtlib {

namespace {

/// A GMP integer that is cleared at the end of its scope
struct Integer
{
  Integer(const char* digits, int base) { mpz_init_set_str(value, digits, base); }
  Integer(const Integer&) = delete;
  Integer& operator=(const Integer&) = delete;
  ~Integer() { mpz_clear(value); }

  mpz_t value;
};

/// The value of digits of that base; a number that fits a word is read without an allocation.
QNumber make_number(std::string_view digits, int base)
{
  long word = 0;
  const char* end = digits.data() + digits.size();
  if (std::from_chars(digits.data(), end, word, base).ec == std::errc()) return {word};
  const Integer integer(std::string(digits).c_str(), base);
  return BVNumber::from_integer(integer.value);
}

}  // namespace

const Term* make_numeral(TermManager& mgr, std::string_view digits, int base, unsigned long w)
{
  return mgr.make_bv_number(make_number(digits, base), w);
}

const Term* make_literal(TermManager& mgr, const Token& token)
{
  if (token.kind == TokenKind::kBinary) return make_numeral(mgr, token.text, 2, token.text.size());
  return make_numeral(mgr, token.text, 16, 4 * token.text.size());
}

bool is_decimal_literal_name(std::string_view symbol)
{
  return symbol.size() > 2 && symbol.starts_with("bv") &&
         std::all_of(symbol.begin() + 2, symbol.end(), is_digit);
}

const Term* make_decimal_literal(TermManager& mgr, std::string_view symbol, unsigned long w)
{
  const QNumber value = make_number(symbol.substr(2), 10);
  return BVNumber::is_pattern(value, w) ? mgr.make_bv_number(value, w) : nullptr;
}

}  // namespace lumo::smtlib
