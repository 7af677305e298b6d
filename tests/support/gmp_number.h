#ifndef LUMO_TESTS_SUPPORT_GMP_NUMBER_H
#define LUMO_TESTS_SUPPORT_GMP_NUMBER_H

#include <ostream>
#include <string>

#include <gmp.h>

namespace lumo::test {

/// A GMP integer that is cleared at the end of its scope; use it wherever an `mpz_t` is expected.
class Integer
{
 public:
  // NOLINTNEXTLINE(google-explicit-constructor): reads as a number
  Integer(long n = 0) { mpz_init_set_si(value_, n); }
  explicit Integer(mpz_srcptr z) { mpz_init_set(value_, z); }
  explicit Integer(const char* decimal) { mpz_init_set_str(value_, decimal, 10); }
  Integer(const Integer& rhs) { mpz_init_set(value_, rhs.value_); }
  Integer& operator=(const Integer& rhs)
  {
    mpz_set(value_, rhs.value_);
    return *this;
  }
  ~Integer() { mpz_clear(value_); }

  /// 2^exponent + offset
  [[nodiscard]] static Integer power(unsigned long exponent, long offset = 0)
  {
    Integer result(1);
    mpz_mul_2exp(result, result, exponent);
    mpz_add(result, result, Integer(offset));
    return result;
  }

  operator mpz_ptr() { return value_; }           // NOLINT(google-explicit-constructor): stands for the mpz_t
  operator mpz_srcptr() const { return value_; }  // NOLINT(google-explicit-constructor): stands for the mpz_t

  /// -1, 0 or 1
  [[nodiscard]] int sign() const { return mpz_sgn(value_); }
  [[nodiscard]] std::string to_string() const
  {
    std::string digits(mpz_sizeinbase(value_, 10) + 2, '\0');
    mpz_get_str(digits.data(), 10, value_);
    digits.resize(digits.find('\0'));
    return digits;
  }
  friend bool operator==(const Integer& lhs, const Integer& rhs)
  {
    return mpz_cmp(lhs.value_, rhs.value_) == 0;
  }
  friend std::ostream& operator<<(std::ostream& out, const Integer& z) { return out << z.to_string(); }

 private:
  mpz_t value_;
};

/// A GMP rational number that is cleared at the end of its scope, always in lowest terms.
class Rational
{
 public:
  Rational(long num = 0, unsigned long den = 1)  // NOLINT(google-explicit-constructor): reads as a number
  {
    mpq_init(value_);
    mpq_set_si(value_, num, den);
    mpq_canonicalize(value_);
  }
  Rational(mpz_srcptr num, mpz_srcptr den)
  {
    mpq_init(value_);
    set(num, den);
  }
  Rational(const Rational& rhs)
  {
    mpq_init(value_);
    mpq_set(value_, rhs.value_);
  }
  Rational& operator=(const Rational& rhs)
  {
    mpq_set(value_, rhs.value_);
    return *this;
  }
  ~Rational() { mpq_clear(value_); }

  /// Become num/den in lowest terms; den is not 0.
  void set(mpz_srcptr num, mpz_srcptr den)
  {
    mpz_set(mpq_numref(value_), num);
    mpz_set(mpq_denref(value_), den);
    mpq_canonicalize(value_);
  }

  operator mpq_ptr() { return value_; }           // NOLINT(google-explicit-constructor): stands for the mpq_t
  operator mpq_srcptr() const { return value_; }  // NOLINT(google-explicit-constructor): stands for the mpq_t
  [[nodiscard]] mpz_srcptr num() const { return mpq_numref(value_); }
  [[nodiscard]] mpz_srcptr den() const { return mpq_denref(value_); }

  friend bool operator==(const Rational& lhs, const Rational& rhs)
  {
    return mpq_equal(lhs.value_, rhs.value_) != 0;
  }
  friend std::ostream& operator<<(std::ostream& out, const Rational& q)
  {
    return out << Integer(q.num()) << '/' << Integer(q.den());
  }

 private:
  mpq_t value_;
};

}  // namespace lumo::test

#endif
