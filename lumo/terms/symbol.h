#ifndef LUMO_TERMS_SYMBOL_H
#define LUMO_TERMS_SYMBOL_H

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "lumo/terms/data_type.h"
#include "lumo/terms/kind.h"

namespace lumo {

/// A function symbol: an operator with its parameters, a declared constant, a numeral, true or false. A term
/// manager owns one object per distinct symbol, so symbols are compared by address.
class Symbol
{
 public:
  /// A leaf. A null name makes a numeral, whose name is made on demand.
  Symbol(TermManagerKey /*key*/, Kind kind, const DataType* output_type,
         std::unique_ptr<const std::string> name)
      : Symbol(kind, output_type, std::move(name))
  {}
  Symbol(const Symbol&) = delete;
  Symbol& operator=(const Symbol&) = delete;

  /// An operator's SMT-LIB 2 spelling with its indices (`bvmul`, `(_ extract 7 4)`), a constant's name as it
  /// was declared, without quotes, or a numeral's literal (`#x0f`, `#b101`). The names of numerals and of fresh
  /// constants are made at the first call.
  [[nodiscard]] const std::string& get_name() const
  {
    if (name_ == nullptr) [[unlikely]]
      name_ = make_name();
    return *name_;
  }
  /// The name, if it was given or exists already. Null for a numeral or a fresh constant whose name was not
  /// requested yet, so a text of many names can be written without storing them.
  [[nodiscard]] const std::string* find_name() const { return name_.get(); }
  /// A copy of the name, without storing the name of a numeral.
  [[nodiscard]] std::string copy_name() const { return name_ != nullptr ? *name_ : *make_name(); }
  /// The sort of the symbol's applications.
  [[nodiscard]] const DataType* get_output_type() const { return output_type_; }
  [[nodiscard]] Kind get_kind() const { return kind_; }
  /// How many arguments the symbol takes; 0 for leaves.
  [[nodiscard]] std::size_t get_arity() const
  {
    return is_operator(kind_) ? get_operator_info(kind_).arity : 0;
  }

 protected:
  Symbol(Kind kind, const DataType* output_type, std::unique_ptr<const std::string> name)
      : output_type_(output_type), name_(std::move(name)), kind_(kind)
  {}

 private:
  /// The name of a numeral or of a fresh constant
  [[nodiscard]] std::unique_ptr<const std::string> make_name() const;

  const DataType* output_type_;
  mutable std::unique_ptr<const std::string> name_;
  Kind kind_;
};

/// A constant whose name is a prefix, an exclamation mark and a number.
class FreshSymbol : public Symbol
{
 public:
  /// The prefix must outlive the symbol.
  FreshSymbol(TermManagerKey /*key*/, const DataType* output_type, const std::string* prefix,
              std::uint32_t number)
      : Symbol(Kind::kConstant, output_type, nullptr), number_(number), prefix_(prefix)
  {}
  [[nodiscard]] std::string make_name() const { return *prefix_ + "!" + std::to_string(number_); }
  [[nodiscard]] const std::string& get_prefix() const { return *prefix_; }
  [[nodiscard]] std::size_t get_number() const { return number_; }

 private:
  std::uint32_t number_;  ///< first, in the padding of the base
  const std::string* prefix_;
};

static_assert(sizeof(FreshSymbol) <= 32, "elimination makes millions of fresh symbols");

/// The parameters of an operator, in the order in which its factory takes them; unused ones are 0.
using Parameters = std::array<unsigned long, kMaxArity>;

/// An operator with its parameters and the sorts of its arguments.
class OperatorSymbol : public Symbol
{
 public:
  using ArgumentTypes = std::array<const DataType*, kMaxArity>;

  /// Argument types beyond the arity are ignored.
  OperatorSymbol(TermManagerKey key, Kind kind, const DataType* output_type,
                 const ArgumentTypes& argument_types, const Parameters& parameters);
  [[nodiscard]] const Parameters& get_parameters() const { return parameters_; }
  /// The sort of argument i; i is below the arity.
  [[nodiscard]] const DataType* get_argument_type(std::size_t i) const { return argument_types_[i]; }

 private:
  Parameters parameters_;
  ArgumentTypes argument_types_;
};

/// Casts the symbol to an operator. Precondition: its kind is an operator.
[[nodiscard]] inline const OperatorSymbol& as_operator(const Symbol* s)
{
  return *static_cast<const OperatorSymbol*>(s);
}

}  // namespace lumo

#endif
