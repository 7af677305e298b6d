#ifndef LUMO_SMTLIB_SYMBOL_TABLE_H
#define LUMO_SMTLIB_SYMBOL_TABLE_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lumo/smtlib/operators.h"
#include "lumo/terms/chunked_vector.h"
#include "lumo/terms/term_manager.h"
#include "lumo/terms/text_key.h"
#include "lumo/terms/unique_table.h"

namespace lumo::smtlib {

class Function;
struct ForeignFunction;

/// The words of the language that begin a term and are not symbols; between bars they are ordinary names.
enum class ReservedWord : std::uint8_t
{
  kNone,
  kAnnotation,  ///< !
  kAs,
  kIndexed,  ///< _
  kLet,
  kBinder,  ///< exists, forall, lambda, match
};

enum class MeaningKind : std::uint8_t
{
  kNone,
  kTerm,      ///< a constant, or the term of a definition, a let or a name
  kOperator,  ///< of the language
  kFunction,  ///< a definition with parameters
  kForeign,   ///< a declared function with arguments, or of a datatype
};

/// The meaning of a symbol.
class Meaning
{
 public:
  Meaning() = default;
  explicit Meaning(const Term* t) : term_(t), kind_(MeaningKind::kTerm) {}
  explicit Meaning(const Operator* op) : op_(op), kind_(MeaningKind::kOperator) {}
  explicit Meaning(const Function* function) : function_(function), kind_(MeaningKind::kFunction) {}
  explicit Meaning(const ForeignFunction* foreign) : foreign_(foreign), kind_(MeaningKind::kForeign) {}

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
  [[nodiscard]] const ForeignFunction* get_foreign() const
  {
    return kind_ == MeaningKind::kForeign ? foreign_ : nullptr;
  }

 private:
  union {
    const Term* term_ = nullptr;
    const Operator* op_;
    const Function* function_;
    const ForeignFunction* foreign_;
  };
  MeaningKind kind_ = MeaningKind::kNone;
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
  [[nodiscard]] Number find(std::string_view text)
  {
    const TextKey key(text);
    const std::uint64_t hash = key.hash();
    const UniqueTable::Index known =
        numbers_.find(hash, [&](UniqueTable::Index i) { return has_text(entries_[i], key, text); });
    return known != UniqueTable::kNone ? known : add(text, key, hash);
  }

  [[nodiscard]] Meaning get_meaning(Number symbol) const { return entries_[symbol]; }
  void set_meaning(Number symbol, const Meaning& meaning)
  {
    static_cast<Meaning&>(entries_[symbol]) = meaning;
  }
  /// The text of a symbol, which lives as long as the table.
  [[nodiscard]] std::string_view get_text(Number symbol) const;
  [[nodiscard]] ReservedWord get_reserved_word(Number symbol) const
  {
    return symbol < reserved_words_.size() ? reserved_words_[symbol] : ReservedWord::kNone;
  }
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
  /// The key is all of a short text; of a long one, `last` is its place in `long_texts_`. The mark lies where the meaning
  /// ends in padding, so that two entries fill a line of a cache.
  struct Entry : Meaning
  {
    explicit Entry(const TextKey& key) : mark(key.mark), first(key.first), last(key.last) {}

    std::uint32_t mark;
    std::uint64_t first;
    std::uint64_t last;
  };
  static_assert(sizeof(Entry) <= 32);

  [[nodiscard]] bool has_text(const Entry& entry, const TextKey& key, std::string_view text) const
  {
    if (entry.first != key.first || entry.mark != key.mark) return false;
    return key.is_short() ? entry.last == key.last : long_texts_[entry.last] == text;
  }
  [[nodiscard]] std::string make_text(const Entry& entry) const;

  Number add(std::string_view text, TextKey key, std::uint64_t hash);

  ChunkedVector<Entry> entries_;
  UniqueTable numbers_;
  std::size_t num_predefined_ = 0;
  std::vector<ReservedWord> reserved_words_;  ///< by number, of the symbols of the language
  std::vector<Number> declared_;              ///< the declared symbols, in their order
  std::deque<std::string> long_texts_;
  mutable std::unordered_map<Number, std::string> requested_texts_;  ///< short ones
};

}  // namespace lumo::smtlib

#endif
