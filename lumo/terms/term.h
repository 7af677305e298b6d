#ifndef LUMO_TERMS_TERM_H
#define LUMO_TERMS_TERM_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "lumo/terms/symbol.h"

namespace lumo {

/// An immutable application of a symbol to arguments, which follow the object in memory in their order. A term
/// manager owns its terms and makes one object per distinct term, so terms are compared by address.
class Term
{
 public:
  Term(const Term&) = delete;
  Term& operator=(const Term&) = delete;

  [[nodiscard]] const Symbol* get_symbol() const { return symbol_; }
  [[nodiscard]] const DataType* get_sort() const { return symbol_->get_output_type(); }
  /// Argument i, counted from 0; i is below the number of arguments.
  [[nodiscard]] const Term* get_arg(std::size_t i) const
  {
    return reinterpret_cast<const Term* const*>(this + 1)[i];
  }
  [[nodiscard]] std::span<const Term* const> get_args() const
  {
    return {reinterpret_cast<const Term* const*>(this + 1), get_num_args()};
  }
  [[nodiscard]] std::size_t get_num_args() const { return symbol_->get_arity(); }
  /// The position in the order in which the manager made its terms, from 0; arguments have smaller ids.
  [[nodiscard]] std::size_t get_id() const { return id_; }

 protected:
  friend class TermManager;
  Term(const Symbol* symbol, std::uint32_t id) : symbol_(symbol), id_(id) {}

 private:
  const Symbol* symbol_;
  std::uint32_t id_;
};

static_assert(sizeof(Term) % alignof(const Term*) == 0, "the arguments follow the object without a gap");

}  // namespace lumo

#endif
