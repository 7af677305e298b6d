#include "lumo/terms/numeral_values.h"

#include <algorithm>

#include <gmp.h>

#include "lumo/numbers/bvnumber.h"

namespace lumo {

namespace {

constexpr unsigned long kWordBits = 64;

/// A GMP integer that is cleared at the end of its scope
class Integer
{
 public:
  Integer() { mpz_init(value_); }
  explicit Integer(const QNumber& number) : Integer() { number.get_numerator(value_); }
  Integer(const Integer&) = delete;
  Integer& operator=(const Integer&) = delete;
  ~Integer() { mpz_clear(value_); }
  operator mpz_ptr() { return value_; }  // NOLINT(google-explicit-constructor): stands for the integer

 private:
  mpz_t value_;
};

bool is_digit(char c, Base base)
{
  switch (base) {
    case Base::kBinary:
      return c == '0' || c == '1';
    case Base::kDecimal:
      return c >= '0' && c <= '9';
    case Base::kHexadecimal:
      return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
  }
  return false;
}

const char* describe(Base base)
{
  switch (base) {
    case Base::kBinary:
      return "binary";
    case Base::kDecimal:
      return "decimal";
    case Base::kHexadecimal:
      return "hexadecimal";
  }
  return "";
}

/// The value of a numeral.
const QNumber& get_value(const Term* numeral)
{
  if (numeral == nullptr) throw Exception("a null pointer was given, but a numeral was expected");
  const QNumber* value = numeral->get_sort()->get_manager()->find_number(numeral->get_symbol());
  if (value == nullptr) {
    throw Exception("a term with the symbol " + numeral->get_symbol()->get_name() +
                    " was given, but a numeral was expected");
  }
  return *value;
}

}  // namespace

QNumber make_number(std::span<const std::uint64_t> words)
{
  Integer value;
  mpz_import(value, words.size(), -1, sizeof(std::uint64_t), 0, 0, words.data());
  return BVNumber::from_integer(value);
}

QNumber make_number(std::string_view digits, Base base)
{
  const auto wrong =
      std::find_if_not(digits.begin(), digits.end(), [base](char c) { return is_digit(c, base); });
  if (wrong != digits.end()) {
    throw Exception("a " + std::string(describe(base)) + " number has the character " +
                    std::string(1, *wrong) + " at place " + std::to_string(wrong - digits.begin() + 1) +
                    ", but a digit was expected");
  }
  if (digits.empty()) throw Exception("a " + std::string(describe(base)) + " number has no digit");
  Integer value;
  mpz_set_str(value, std::string(digits).c_str(), static_cast<int>(base));
  return BVNumber::from_integer(value);
}

std::vector<std::uint64_t> make_words(const QNumber& pattern, unsigned long w)
{
  std::vector<std::uint64_t> words((w + kWordBits - 1) / kWordBits);
  Integer value(pattern);
  mpz_export(words.data(), nullptr, -1, sizeof(std::uint64_t), 0, 0, value);
  return words;
}

std::string make_digits(const QNumber& pattern, Base base, unsigned long w)
{
  Integer value(pattern);
  // GMP's count is exact for powers of two, and may be one too large for others. The end has room for a zero byte.
  const std::size_t num_significant = mpz_sizeinbase(value, static_cast<int>(base));
  std::string digits(num_significant + 1, '\0');
  mpz_get_str(digits.data(), static_cast<int>(base), value);
  digits.resize(digits.find('\0'));
  if (base == Base::kDecimal) return digits;
  const std::size_t num_digits = base == Base::kBinary ? w : (w + 3) / 4;
  digits.insert(0, num_digits - digits.size(), '0');
  return digits;
}

const Term* make_numeral(TermManager& mgr, std::span<const std::uint64_t> words, unsigned long w)
{
  return mgr.make_bv_number(make_number(words), w);
}

const Term* make_numeral(TermManager& mgr, std::string_view digits, Base base, unsigned long w)
{
  return mgr.make_bv_number(make_number(digits, base), w);
}

bool get_word(const Term* numeral, std::uint64_t& word)
{
  const QNumber& value = get_value(numeral);
  if (!BVNumber::is_pattern(value, kWordBits)) return false;
  word = make_words(value, kWordBits).front();
  return true;
}

std::vector<std::uint64_t> get_words(const Term* numeral)
{
  return make_words(get_value(numeral), numeral->get_sort()->get_width());
}

std::string get_digits(const Term* numeral, Base base)
{
  return make_digits(get_value(numeral), base, numeral->get_sort()->get_width());
}

}  // namespace lumo
