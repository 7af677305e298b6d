#ifndef LUMO_SMTLIB_SYMBOL_TABLE_H
#define LUMO_SMTLIB_SYMBOL_TABLE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/smtlib/operators.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

class Function;

/// The words of the language that begin a term and are not symbols; between bars they are ordinary names.
enum class ReservedWord : std::uint8_t
{
  kNone,
  kAnnotation,  ///< !
  kAs,
  kIndexed,  ///< _
  kLet,
  kBinder,  ///< exists, forall, lambda, match: not supported
};

enum class MeaningKind : std::uint8_t
{
  kNone,
  kTerm,      ///< a constant, or the term of a definition, a let or a name
  kOperator,  ///< of the language
  kFunction,  ///< a definition with parameters
};

/// The meaning of a symbol.
class Meaning
{
 public:
  Meaning() = default;
  explicit Meaning(const Term* t) : kind_(MeaningKind::kTerm), term_(t) {}
  explicit Meaning(const Operator* op) : kind_(MeaningKind::kOperator), op_(op) {}
  explicit Meaning(const Function* function) : kind_(MeaningKind::kFunction), function_(function) {}

  [[nodiscard]] MeaningKind get_kind() const { return kind_; }
  [[nodiscard]] bool is_none() const { return kind_ == MeaningKind::kNone; }
  /// Each of these returns null for a meaning of another kind.
  [[nodiscard]] const Term* get_term() const { return kind_ == MeaningKind::kTerm ? term_ : nullptr; }
  [[nodiscard]] const Operator* get_operator() const
  {
    return kind_ == MeaningKind::kOperator ? op_ : nullptr;
  }
  [[nodiscard]] const Function* get_function() const
  {
    return kind_ == MeaningKind::kFunction ? function_ : nullptr;
  }

 private:
  MeaningKind kind_ = MeaningKind::kNone;
  union {
    const Term* term_ = nullptr;
    const Operator* op_;
    const Function* function_;
  };
};

/// The symbols of a script and their meanings. A symbol is looked up once for each of its occurrences; after that,
/// its number is an index to its meaning.
class SymbolTable
{
 public:
  /// The number of a symbol
  using Number = std::uint32_t;

  /// Starts with the operators, true and false of the language.
  explicit SymbolTable(TermManager& mgr);
  SymbolTable(const SymbolTable&) = delete;
  SymbolTable& operator=(const SymbolTable&) = delete;

  /// The number of the symbol with that text. A new symbol has no meaning.
  [[nodiscard]] Number find(std::string_view text);

  [[nodiscard]] const Meaning& get_meaning(Number symbol) const { return entries_[symbol].meaning; }
  void set_meaning(Number symbol, const Meaning& meaning) { entries_[symbol].meaning = meaning; }
  [[nodiscard]] std::string_view get_text(Number symbol) const { return entries_[symbol].get_text(); }
  [[nodiscard]] ReservedWord get_reserved_word(Number symbol) const { return entries_[symbol].reserved; }
  /// Whether the language gives the symbol its meaning.
  [[nodiscard]] bool is_predefined(Number symbol) const { return symbol < num_predefined_; }

  /// Declares a symbol for the current level.
  void declare(Number symbol, const Meaning& meaning);
  /// The number of declarations; `forget` removes all after the first `count`.
  [[nodiscard]] std::size_t get_num_declarations() const { return declared_.size(); }
  void forget(std::size_t count);
  /// The symbol of a declaration, counted from 0.
  [[nodiscard]] Number get_declared(std::size_t declaration) const { return declared_[declaration]; }

  /// The symbol with a meaning whose text is nearest to this one; empty if none is near.
  [[nodiscard]] std::string find_nearest(std::string_view text) const;

 private:
  struct Entry
  {
    const char* text;
    std::uint32_t size;  ///< of the text
    ReservedWord reserved = ReservedWord::kNone;
    Meaning meaning{};

    [[nodiscard]] std::string_view get_text() const { return {text, size}; }
  };
  static constexpr Number kEmpty = ~Number{0};
  /// A place of the hash table
  struct Place
  {
    std::uint32_t hash;
    Number number = kEmpty;
  };

  Number add(std::string_view text, std::uint32_t hash);
  void put(const Place& place);
  void grow();
  /// A copy of the text that lives as long as the table.
  [[nodiscard]] const char* keep(std::string_view text);

  std::vector<Entry> entries_;
  std::vector<Place> places_;  ///< a hash table with linear probing; its size is a power of two
  std::size_t num_predefined_ = 0;
  std::vector<Number> declared_;  ///< the declared symbols, in their order
  std::vector<std::unique_ptr<char[]>> texts_;
  std::size_t num_left_ = 0;  ///< number of unused characters in the last piece of `texts_`
  char* next_ = nullptr;
};

}  // namespace lumo::smtlib

#endif
