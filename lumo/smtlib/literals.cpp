#include "lumo/smtlib/literals.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
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

/// The most digits of each base that always fit a word
constexpr std::size_t count_short_digits(int base) { return base == 16 ? 15 : base == 10 ? 18 : 62; }

constexpr std::array<std::uint8_t, 256> make_digit_values()
{
  std::array<std::uint8_t, 256> values{};
  for (std::uint8_t i = 0; i < 10; ++i)
    values['0' + i] = i;
  for (std::uint8_t i = 0; i < 6; ++i)
    values['a' + i] = values['A' + i] = static_cast<std::uint8_t>(10 + i);
  return values;
}
constexpr std::array<std::uint8_t, 256> kDigitValues = make_digit_values();

/// The value of digits that fit a word
template <unsigned long kBase>
long make_word(std::string_view digits)
{
  unsigned long word = 0;
  for (const char c : digits)
    word = word * kBase + kDigitValues[static_cast<unsigned char>(c)];
  return static_cast<long>(word);
}

/// The value of digits of that base; a number that fits a word is read without an allocation.
QNumber make_number(std::string_view digits, int base)
{
  if (digits.size() <= count_short_digits(base)) {
    return {base == 16 ? make_word<16>(digits) : base == 10 ? make_word<10>(digits) : make_word<2>(digits)};
  }
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
