#ifndef LUMO_TERMS_SYMBOL_H
#define LUMO_TERMS_SYMBOL_H

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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
      : Symbol(kind, output_type, Naming::kByValue, std::move(name))
  {}
  Symbol(const Symbol&) = delete;
  Symbol& operator=(const Symbol&) = delete;

  /// An operator's SMT-LIB 2 spelling with its indices (`bvmul`, `(_ extract 7 4)`), a constant's name as it
  /// was declared, without quotes, or a numeral's literal (`#x0f`, `#b101`). The names of all but operators are made
  /// strings at the first call.
  [[nodiscard]] const std::string& get_name() const
  {
    if (name_ == nullptr) [[unlikely]]
      name_ = make_name();
    return *name_;
  }
  /// The name, if its characters exist. Nothing for a numeral or a fresh constant whose name was not requested yet, so a
  /// text of many names can be written without storing them.
  [[nodiscard]] inline std::optional<std::string_view> find_name() const;
  /// A copy of the name, without storing it.
  [[nodiscard]] std::string copy_name() const { return name_ != nullptr ? *name_ : *make_name(); }
  /// The sort of the symbol's applications.
  [[nodiscard]] const DataType* get_output_type() const { return output_type_; }
  [[nodiscard]] Kind get_kind() const { return kind_; }
  /// How many characters of its name a manager keeps after the symbol's term.
  [[nodiscard]] inline std::size_t get_text_size() const;
  /// How many arguments the symbol takes; 0 for leaves.
  [[nodiscard]] std::size_t get_arity() const { return arity_; }

 protected:
  /// What a name is made of that is not a string yet
  enum class Naming : std::uint8_t
  {
    kByValue,  ///< a numeral's value
    kByText,   ///< the characters of a DeclaredSymbol
    kByNumber  ///< prefix and number of a FreshSymbol
  };

  Symbol(Kind kind, const DataType* output_type, Naming naming, std::unique_ptr<const std::string> name)
      : output_type_(output_type),
        name_(std::move(name)),
        kind_(kind),
        naming_(naming),
        arity_(is_operator(kind) ? get_operator_info(kind).arity : 0)
  {}

 private:
  [[nodiscard]] std::unique_ptr<const std::string> make_name() const;

  const DataType* output_type_;
  mutable std::unique_ptr<const std::string> name_;
  Kind kind_;
  Naming naming_;
  std::uint8_t arity_;  ///< here, since every walk asks for it
};

/// A constant that was declared. A manager has many, so the characters of most names lie where it keeps them, and
/// become a string only when one is asked for.
class DeclaredSymbol : public Symbol
{
 public:
  /// The characters are given afterwards by `set_text`, unless there is a string of the name, as of a long one.
  DeclaredSymbol(TermManagerKey /*key*/, const DataType* output_type, std::uint32_t size,
                 std::unique_ptr<const std::string> name)
      : Symbol(Kind::kConstant, output_type, Naming::kByText, std::move(name)), size_(size)
  {}
  void set_text(TermManagerKey /*key*/, const char* text) { text_ = text; }
  /// The characters, which live as long as the symbol; none if the name was given as a string.
  [[nodiscard]] std::string_view get_text() const { return {text_, has_text() ? size_ : 0}; }
  [[nodiscard]] bool has_text() const { return text_ != nullptr; }

 private:
  std::uint32_t size_;  ///< first, in the padding of the base
  const char* text_ = nullptr;
};

static_assert(sizeof(DeclaredSymbol) <= 32, "scripts declare millions of them");

inline std::optional<std::string_view> Symbol::find_name() const
{
  if (name_ != nullptr) return *name_;
  if (naming_ != Naming::kByText) return {};
  const DeclaredSymbol& declared = *static_cast<const DeclaredSymbol*>(this);
  if (!declared.has_text()) return {};
  return declared.get_text();
}

inline std::size_t Symbol::get_text_size() const
{
  return naming_ == Naming::kByText ? static_cast<const DeclaredSymbol*>(this)->get_text().size() : 0;
}

/// A constant whose name is a prefix, an exclamation mark and a number.
class FreshSymbol : public Symbol
{
 public:
  /// The prefix must outlive the symbol.
  FreshSymbol(TermManagerKey /*key*/, const DataType* output_type, const std::string* prefix,
              std::uint32_t number)
      : Symbol(Kind::kConstant, output_type, Naming::kByNumber, nullptr), number_(number), prefix_(prefix)
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
