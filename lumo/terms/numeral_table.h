#ifndef LUMO_TERMS_NUMERAL_TABLE_H
#define LUMO_TERMS_NUMERAL_TABLE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "lumo/numbers/qnumber.h"
#include "lumo/terms/prime_modulus.h"
#include "lumo/terms/symbol.h"
#include "lumo/terms/term.h"

namespace lumo {

/// A numeral: its symbol, the symbol as a term, and its value, in one object.
class Numeral : public Symbol
{
 public:
  Numeral(TermManagerKey key, const DataType* type, QNumber&& value, std::uint32_t id) noexcept
      : Symbol(key, Kind::kNumeral, type, nullptr), term_(this, id), value_(static_cast<QNumber&&>(value))
  {}

  /// Casts s to a numeral. Precondition: the kind of s is numeral.
  [[nodiscard]] static const Numeral& of(const Symbol* s) { return *static_cast<const Numeral*>(s); }

  [[nodiscard]] const Term* get_term() const { return &term_; }
  [[nodiscard]] const QNumber& get_value() const { return value_; }

 private:
  friend class NumeralTable;
  using Index = std::uint32_t;

  // The links to the next numerals in the two chains need no extra memory: they lie in the padding of the classes
  // before them.
  struct LinkedTerm : Term
  {
    LinkedTerm(const Symbol* symbol, std::uint32_t id) : Term(symbol, id) {}
    Index next = 0;
  };

  Index next_ = 0;
  LinkedTerm term_;
  QNumber value_;
};

static_assert(sizeof(Numeral) <= 56, "the links fit the padding");

/// The numerals of a manager, which it owns, in two chained hash tables: one is indexed by the symbol's address
/// modulo the number of buckets, the other by a hash of value and sort.
///
/// Addresses are multiples of their alignment, so with a power of two most buckets would stay empty; the
/// number of buckets is a prime, which shares no factor with any alignment.
class NumeralTable
{
 public:
  NumeralTable() = default;
  NumeralTable(const NumeralTable&) = delete;
  NumeralTable& operator=(const NumeralTable&) = delete;
  ~NumeralTable();

  [[nodiscard]] bool empty() const { return size_ == 0; }
  [[nodiscard]] std::size_t size() const { return size_; }

  /// The numeral of a symbol, or null. The table must not be empty.
  [[nodiscard]] const Numeral* find(const Symbol* s) const
  {
    for (Index i = by_symbol_[get_bucket(s)]; i != kNone;) {
      const Numeral& candidate = at(i);
      if (&candidate == s) return &candidate;
      i = candidate.next_;
    }
    return nullptr;
  }
  /// The hash of a value and a sort.
  [[nodiscard]] static std::uint64_t hash(const QNumber& value, const DataType* type);
  /// The numeral of a value and a sort, or null. hash is the hash of both.
  [[nodiscard]] const Numeral* find(std::uint64_t hash, const QNumber& value, const DataType* type) const;
  [[nodiscard]] const Numeral* find(const QNumber& value, const DataType* type) const
  {
    return find(hash(value, type), value, type);
  }

  /// Adds a numeral that is not in the table; hash is the hash of value and sort, and id the id of its term. If it
  /// throws, the table is unchanged. Numerals are never moved.
  const Numeral& insert(TermManagerKey key, std::uint64_t hash, const DataType* type, QNumber value,
                        std::uint32_t id);

  /// Destroys the newest numerals until `size` are left.
  void release(std::size_t size) noexcept;
  /// Destroys all numerals and frees all memory.
  void clear() noexcept;

  /// The number of buckets of the table by symbol.
  [[nodiscard]] std::size_t get_num_buckets() const { return by_symbol_.size(); }
  /// The number of symbols in bucket i.
  [[nodiscard]] std::size_t get_chain_length(std::size_t i) const;

 private:
  using Index = Numeral::Index;
  static constexpr Index kNone = ~Index{0};
  static constexpr std::size_t kChunkSize = 128;

  /// Raw memory for the numerals of one chunk
  struct Chunk
  {
    alignas(Numeral) std::byte memory[kChunkSize * sizeof(Numeral)];
  };

  [[nodiscard]] std::size_t get_bucket(const Symbol* s) const
  {
    return modulus_.reduce(reinterpret_cast<std::uintptr_t>(s));
  }
  /// Hashes are well mixed except for their lowest bits, so the upper half of a product spreads them evenly.
  [[nodiscard]] std::size_t get_value_bucket(std::uint64_t hash) const;

  [[nodiscard]] Numeral* slot(std::size_t i) const
  {
    return reinterpret_cast<Numeral*>(chunks_[i / kChunkSize]->memory) + i % kChunkSize;
  }
  [[nodiscard]] const Numeral& at(std::size_t i) const { return *slot(i); }
  void make_room();
  void grow();
  void link(Index i, std::uint64_t hash) noexcept;

  std::vector<std::unique_ptr<Chunk>> chunks_;
  std::size_t size_ = 0;
  PrimeModulus modulus_;          ///< the number of buckets
  std::vector<Index> by_symbol_;  ///< the heads of the chains
  std::vector<Index> by_value_;
};

}  // namespace lumo

#endif
