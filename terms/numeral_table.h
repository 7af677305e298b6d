#ifndef LUMO_TERMS_NUMERAL_TABLE_H
#define LUMO_TERMS_NUMERAL_TABLE_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "numbers/qnumber.h"

namespace lumo {

class Symbol;
class Term;

/// The values of numerals: a chained hash table from numeral symbols to their numbers, indexed by the
/// symbol's address modulo the number of buckets.
///
/// Addresses are multiples of their alignment, so a power of two would leave most buckets empty for ever; the
/// number of buckets is a prime, which shares no factor with any alignment.
class NumeralTable
{
 public:
  struct Entry
  {
    const Symbol* symbol;
    QNumber value;
    const Term* term;  ///< the symbol as a term
    Entry* next;
  };

  [[nodiscard]] bool empty() const { return entries_.empty(); }
  [[nodiscard]] std::size_t size() const { return entries_.size(); }

  /// The entry of a symbol, or null. The table must not be empty.
  [[nodiscard]] const Entry* find(const Symbol* s) const
  {
    const Entry* entry = buckets_[bucket_of(s)];
    while (entry != nullptr && entry->symbol != s)
      entry = entry->next;
    return entry;
  }

  /// Adds a symbol that is not in the table. If it throws, the table holds what it held before.
  const Entry& insert(const Symbol* s, QNumber value, const Term* term);

  [[nodiscard]] std::size_t get_num_buckets() const { return buckets_.size(); }
  /// How many entries share bucket i.
  [[nodiscard]] std::size_t get_chain_length(std::size_t i) const;

 private:
  [[nodiscard]] std::size_t bucket_of(const Symbol* s) const
  {
    return reinterpret_cast<std::uintptr_t>(s) % buckets_.size();
  }
  void grow();

  std::deque<Entry> entries_;
  std::vector<Entry*> buckets_;  ///< at least as many as entries
};

}  // namespace lumo

#endif
