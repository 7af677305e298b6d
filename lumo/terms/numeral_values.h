#ifndef LUMO_TERMS_NUMERAL_VALUES_H
#define LUMO_TERMS_NUMERAL_VALUES_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/numbers/qnumber.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

// Conversions between bit-vector values, 64-bit words and digits. The least significant word is first. Time is
// linear in the width, except for decimal digits, which take a little more.

enum class Base : int
{
  kBinary = 2,
  kDecimal = 10,
  kHexadecimal = 16,
};

// --------------------------------------------------------------------------------------------------- numbers

/// The number with these words; 0 if there are none.
[[nodiscard]] QNumber make_number(std::span<const std::uint64_t> words);
/// The number with these digits, without sign and prefix; hexadecimal digits may have either case. Empty text, and
/// characters that are not digits of the base, are refused with an `Exception`.
[[nodiscard]] QNumber make_number(std::string_view digits, Base base);

/// A pattern in [0, 2^w - 1] as ceil(w / 64) words.
[[nodiscard]] std::vector<std::uint64_t> make_words(const QNumber& pattern, unsigned long w);
/// A pattern in [0, 2^w - 1] as digits: w binary digits, ceil(w / 4) hexadecimal digits in lower case, or decimal
/// digits without leading zeros.
[[nodiscard]] std::string make_digits(const QNumber& pattern, Base base, unsigned long w);

// --------------------------------------------------------------------------------------------------- numerals

/// The numeral of width w whose value is the words' number modulo 2^w.
[[nodiscard]] const Term* make_numeral(TermManager& mgr, std::span<const std::uint64_t> words,
                                       unsigned long w);
/// The numeral of width w whose value is the digits' number modulo 2^w.
[[nodiscard]] const Term* make_numeral(TermManager& mgr, std::string_view digits, Base base, unsigned long w);

/// Whether the value of a numeral is below 2^64. If so, stores it in `word`, which is otherwise unchanged. This and
/// the next two functions refuse a null pointer and a term that is not a numeral with an `Exception`.
bool get_word(const Term* numeral, std::uint64_t& word);
[[nodiscard]] std::vector<std::uint64_t> get_words(const Term* numeral);
[[nodiscard]] std::string get_digits(const Term* numeral, Base base);

}  // namespace lumo

#endif
