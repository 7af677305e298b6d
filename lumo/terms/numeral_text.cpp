#include "lumo/terms/numeral_text.h"

#include "lumo/numbers/scratch.h"

namespace lumo {

std::string make_numeral_text(const QNumber& pattern, unsigned long width)
{
  const bool hexadecimal = width % 4 == 0;
  const int base = hexadecimal ? 16 : 2;
  const unsigned long num_digits = hexadecimal ? width / 4 : width;

  mpz_srcptr value = pattern.view_numerator(get_scratch()[0]);
  const std::size_t num_significant = mpz_sgn(value) == 0 ? 0 : mpz_sizeinbase(value, base);
  // GMP writes its digits and a terminating zero; the last character has room for the zero and is cut off.
  std::string text(2 + num_digits + 1, '0');
  text[0] = '#';
  text[1] = hexadecimal ? 'x' : 'b';
  if (num_significant != 0) mpz_get_str(text.data() + 2 + (num_digits - num_significant), base, value);
  text.resize(2 + num_digits);
  return text;
}

}  // namespace lumo
