#ifndef LUMO_BENCH_NUMBER_PEERS_H
#define LUMO_BENCH_NUMBER_PEERS_H

#include <cstdlib>

#include <flint/fmpq.h>
#include <flint/fmpz.h>
#include <gmp.h>

#include "lumo/numbers/qnumber.h"

namespace lumo::bench {

/// A GMP or FLINT variable that is initialised and cleared; copies assign.
template <class Raw, void (*kInit)(Raw*), void (*kClear)(Raw*), void (*kAssign)(Raw*, const Raw*)>
struct Variable
{
  Variable() { kInit(&raw); }
  Variable(const Variable& rhs) : Variable() { kAssign(&raw, &rhs.raw); }
  Variable& operator=(const Variable& rhs)
  {
    kAssign(&raw, &rhs.raw);
    return *this;
  }
  ~Variable() { kClear(&raw); }

  Raw raw;
};

// Not every compiler accepts inline functions of C as template arguments, so they get a wrapper.
inline void init_fmpz(fmpz* z) { fmpz_init(z); }
inline void clear_fmpz(fmpz* z) { fmpz_clear(z); }
inline void assign_fmpz(fmpz* z, const fmpz* x) { fmpz_set(z, x); }
inline void init_fmpq(fmpq* q) { fmpq_init(q); }
inline void clear_fmpq(fmpq* q) { fmpq_clear(q); }
inline void assign_fmpq(fmpq* q, const fmpq* x) { fmpq_set(q, x); }
inline void assign_mpz(__mpz_struct* z, const __mpz_struct* x) { mpz_set(z, x); }
inline void init_mpz(__mpz_struct* z) { mpz_init(z); }
inline void clear_mpz(__mpz_struct* z) { mpz_clear(z); }
inline void assign_mpq(__mpq_struct* q, const __mpq_struct* x) { mpq_set(q, x); }
inline void init_mpq(__mpq_struct* q) { mpq_init(q); }
inline void clear_mpq(__mpq_struct* q) { mpq_clear(q); }

// Each peer has the same operations on its own type of number. `divide` truncates if kTruncates is set,
// and rounds down otherwise, as lumo's numbers do for words and for anything longer.

struct Lumo
{
  using Number = QNumber;
  static Number make(mpq_srcptr q)
  {
    if (mpz_fits_slong_p(mpq_numref(q)) != 0 && mpz_fits_slong_p(mpq_denref(q)) != 0) {
      return {mpz_get_si(mpq_numref(q)), mpz_get_si(mpq_denref(q))};
    }
    return {mpq_numref(q), mpq_denref(q)};
  }
  static void add(Number& x, const Number& y) { x += y; }
  static void subtract(Number& x, const Number& y) { x -= y; }
  static void multiply(Number& x, const Number& y) { x *= y; }
  template <bool kTruncates>
  static void divide(Number& q, Number& r, const Number& x, const Number& d)
  {
    x.divmod(d, q, r);
  }
  static bool less(const Number& x, const Number& y) { return x < y; }
  static bool equal(const Number& x, const Number& y) { return x == y; }
};

struct GmpInteger
{
  using Number = Variable<__mpz_struct, init_mpz, clear_mpz, assign_mpz>;
  static Number make(mpq_srcptr q)
  {
    Number result;
    mpz_set(&result.raw, mpq_numref(q));
    return result;
  }
  static void add(Number& x, const Number& y) { mpz_add(&x.raw, &x.raw, &y.raw); }
  static void subtract(Number& x, const Number& y) { mpz_sub(&x.raw, &x.raw, &y.raw); }
  static void multiply(Number& x, const Number& y) { mpz_mul(&x.raw, &x.raw, &y.raw); }
  template <bool kTruncates>
  static void divide(Number& q, Number& r, const Number& x, const Number& d)
  {
    if constexpr (kTruncates) {
      mpz_tdiv_qr(&q.raw, &r.raw, &x.raw, &d.raw);
    } else {
      mpz_fdiv_qr(&q.raw, &r.raw, &x.raw, &d.raw);
    }
  }
  static bool less(const Number& x, const Number& y) { return mpz_cmp(&x.raw, &y.raw) < 0; }
  static bool equal(const Number& x, const Number& y) { return mpz_cmp(&x.raw, &y.raw) == 0; }
};

struct GmpRational
{
  using Number = Variable<__mpq_struct, init_mpq, clear_mpq, assign_mpq>;
  static Number make(mpq_srcptr q)
  {
    Number result;
    mpq_set(&result.raw, q);
    return result;
  }
  static void add(Number& x, const Number& y) { mpq_add(&x.raw, &x.raw, &y.raw); }
  static void subtract(Number& x, const Number& y) { mpq_sub(&x.raw, &x.raw, &y.raw); }
  static void multiply(Number& x, const Number& y) { mpq_mul(&x.raw, &x.raw, &y.raw); }
  static bool less(const Number& x, const Number& y) { return mpq_cmp(&x.raw, &y.raw) < 0; }
  static bool equal(const Number& x, const Number& y) { return mpq_equal(&x.raw, &y.raw) != 0; }
};

struct FlintInteger
{
  using Number = Variable<fmpz, init_fmpz, clear_fmpz, assign_fmpz>;
  static Number make(mpq_srcptr q)
  {
    Number result;
    fmpz_set_mpz(&result.raw, mpq_numref(q));
    return result;
  }
  static void add(Number& x, const Number& y) { fmpz_add(&x.raw, &x.raw, &y.raw); }
  static void subtract(Number& x, const Number& y) { fmpz_sub(&x.raw, &x.raw, &y.raw); }
  static void multiply(Number& x, const Number& y) { fmpz_mul(&x.raw, &x.raw, &y.raw); }
  template <bool kTruncates>
  static void divide(Number& q, Number& r, const Number& x, const Number& d)
  {
    if constexpr (kTruncates) {
      fmpz_tdiv_qr(&q.raw, &r.raw, &x.raw, &d.raw);
    } else {
      fmpz_fdiv_qr(&q.raw, &r.raw, &x.raw, &d.raw);
    }
  }
  static bool less(const Number& x, const Number& y) { return fmpz_cmp(&x.raw, &y.raw) < 0; }
  static bool equal(const Number& x, const Number& y) { return fmpz_equal(&x.raw, &y.raw) != 0; }
};

struct FlintRational
{
  using Number = Variable<fmpq, init_fmpq, clear_fmpq, assign_fmpq>;
  static Number make(mpq_srcptr q)
  {
    Number result;
    fmpq_set_mpq(&result.raw, q);
    return result;
  }
  static void add(Number& x, const Number& y) { fmpq_add(&x.raw, &x.raw, &y.raw); }
  static void subtract(Number& x, const Number& y) { fmpq_sub(&x.raw, &x.raw, &y.raw); }
  static void multiply(Number& x, const Number& y) { fmpq_mul(&x.raw, &x.raw, &y.raw); }
  static bool less(const Number& x, const Number& y) { return fmpq_cmp(&x.raw, &y.raw) < 0; }
  static bool equal(const Number& x, const Number& y) { return fmpq_equal(&x.raw, &y.raw) != 0; }
};

/// The cost of a checked machine word: the lower bound for every number type.
struct PlainWord
{
  using Number = long;
  static Number make(mpq_srcptr q) { return mpz_get_si(mpq_numref(q)); }
  static void add(Number& x, Number y)
  {
    if (__builtin_add_overflow(x, y, &x)) std::abort();
  }
};

}  // namespace lumo::bench

#endif
