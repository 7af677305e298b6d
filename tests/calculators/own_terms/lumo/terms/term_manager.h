#ifndef LUMO_TESTS_CALCULATORS_OWN_TERMS_TERM_MANAGER_H
#define LUMO_TESTS_CALCULATORS_OWN_TERMS_TERM_MANAGER_H

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lumo/numbers/qnumber.h"

// The terms of a solver that hosts the calculators: only the members that these need are public. This header is
// found in place of lumo's own header of this name. It checks nothing, so a test can make ill-sorted terms.

namespace lumo {

namespace test {

class TermFactory;

}  // namespace test

class DataType
{
 private:
  friend class TermManager;
  friend class test::TermFactory;
  explicit DataType(unsigned long width) : width_(width) {}

  unsigned long width_;  ///< 0 for Bool
};

class Symbol
{
 public:
  [[nodiscard]] const std::string& get_name() const;
  [[nodiscard]] const DataType* get_output_type() const;

 private:
  friend class TermManager;
  friend class test::TermFactory;
  Symbol() = default;

  std::string name_;
  const DataType* type_ = nullptr;
  int kind_ = 0;                           ///< a `Kind`
  std::vector<unsigned long> parameters_;  ///< of an operator
  std::optional<QNumber> number_;          ///< of a numeral
};

class Term
{
 public:
  [[nodiscard]] const Symbol* get_symbol() const { return symbol_; }
  [[nodiscard]] const Term* get_arg(unsigned long i) const { return args_.at(i); }

 private:
  friend class test::TermFactory;
  Term(const Symbol* symbol, const std::vector<const Term*>& args) : symbol_(symbol), args_(args) {}

  const Symbol* symbol_;
  std::vector<const Term*> args_;
};

class TermManager
{
 public:
  TermManager();
  TermManager(const TermManager&) = delete;
  TermManager& operator=(const TermManager&) = delete;
  ~TermManager();

  const Symbol* get_true_symbol();
  const Symbol* get_false_symbol();
  const Term* make_true();
  const Term* make_false();

  bool is_number(const Symbol* s, QNumber* out) const;
  const Term* make_bv_number(const QNumber& n, unsigned long w);
  const Term* make_bv_number(int n, unsigned long w);

  bool is_constant(const Symbol* s) const;
  bool is_bv_type(const DataType* type, unsigned long* w) const;
  bool is_bv_ult(const Symbol* s, unsigned long* w) const;
  bool is_bv_ule(const Symbol* s, unsigned long* w) const;
  bool is_bv_slt(const Symbol* s, unsigned long* w) const;
  bool is_bv_sle(const Symbol* s, unsigned long* w) const;
  bool is_bv_extract(const Symbol* s, unsigned long* msb, unsigned long* lsb, unsigned long* w) const;
  bool is_bv_concat(const Symbol* s, unsigned long* w1, unsigned long* w2) const;
  bool is_bv_rotate_left(const Symbol* s, unsigned long* k, unsigned long* w) const;
  bool is_bv_rotate_right(const Symbol* s, unsigned long* k, unsigned long* w) const;

  const Symbol* make_bv_add_symbol(unsigned long w);
  const Symbol* make_bv_sub_symbol(unsigned long w);
  const Symbol* make_bv_neg_symbol(unsigned long w);
  const Symbol* make_bv_not_symbol(unsigned long w);
  const Symbol* make_bv_xor_symbol(unsigned long w);
  const Symbol* make_bv_concat_symbol(unsigned long w1, unsigned long w2);
  const Symbol* make_bv_extract_symbol(unsigned long msb, unsigned long lsb, unsigned long w);
  const Symbol* make_bv_rotate_left_symbol(unsigned long k, unsigned long w);
  const Symbol* make_bv_rotate_right_symbol(unsigned long k, unsigned long w);
  const Symbol* make_bv_zero_extend_symbol(unsigned long k, unsigned long w);

 private:
  friend class test::TermFactory;

  const std::unique_ptr<test::TermFactory> factory_;
};

}  // namespace lumo

#endif
