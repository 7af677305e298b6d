#include "lumo/terms/numeral_table.h"

#include <algorithm>
#include <cassert>
#include <new>
#include <utility>

#include "lumo/numbers/hash_mix.h"
#include "lumo/numbers/scratch.h"

namespace lumo {

namespace {

constexpr std::size_t kFirstNumBuckets = 61;
constexpr std::size_t kManyBuckets = 5000;

__extension__ using Product = unsigned __int128;

/// Numbers that differ only in these bits have neighbouring hashes and buckets, so that numbers that are used in their
/// order are found in the cache.
constexpr std::uint64_t kNeighbours = 7;

/// The hash is the same for the small and the big form of a number.
std::uint64_t hash_pattern(const QNumber& pattern, unsigned long w)
{
  std::uint64_t hash = kHashFirst * (2 * w + 1);
  long word;
  if (pattern.get_word(word)) {
    const auto bits = static_cast<std::uint64_t>(word);
    return (multiply_and_fold((bits & ~kNeighbours) ^ kHashSecond, hash) & ~kNeighbours) |
           (bits & kNeighbours);
  }
  mpz_srcptr z = pattern.view_numerator(get_scratch()[0]);
  for (std::size_t i = 0; i < mpz_size(z); ++i)
    hash = multiply_and_fold(mpz_getlimbn(z, static_cast<mp_size_t>(i)) ^ kHashSecond, hash ^ kHashFirst);
  return hash;
}

}  // namespace

NumeralTable::~NumeralTable()
{
  for (std::size_t i = 0; i < size_; ++i)
    slot(i)->~Numeral();
}

/// `insert` puts a numeral at the head of its chains, and growing links all of them in their order. So each chain
/// has the newest numeral first.
void NumeralTable::release(std::size_t size) noexcept
{
  while (size_ > size) {
    const auto i = static_cast<Index>(size_ - 1);
    Numeral& numeral = *slot(i);
    Index& same_symbol_bucket = by_symbol_[get_bucket(&numeral)];
    Index& same_value_bucket = by_value_[get_value_bucket(hash(numeral.value_, numeral.get_output_type()))];
    assert(same_symbol_bucket == i && same_value_bucket == i && "chains have the newest numeral first");
    same_symbol_bucket = numeral.next_;
    same_value_bucket = numeral.term_.next;
    numeral.~Numeral();
    --size_;
  }
  chunks_.resize((size_ + kChunkSize - 1) / kChunkSize);
}

void NumeralTable::clear() noexcept
{
  release(0);
  by_symbol_ = {};
  by_value_ = {};
}

std::size_t NumeralTable::get_value_bucket(std::uint64_t hash) const
{
  const auto first = static_cast<std::size_t>((Product{hash & ~kNeighbours} * by_value_.size()) >> 64U);
  const std::size_t bucket = first + (hash & kNeighbours);
  return bucket < by_value_.size() ? bucket : bucket - by_value_.size();
}

std::uint64_t NumeralTable::hash(const QNumber& value, const DataType* type)
{
  return hash_pattern(value, type->get_width());
}

const Numeral* NumeralTable::find(std::uint64_t hash, const QNumber& value, const DataType* type) const
{
  if (empty()) return nullptr;
  for (Index i = by_value_[get_value_bucket(hash)]; i != kNone;) {
    const Numeral& candidate = at(i);
    if (candidate.value_ == value && candidate.get_output_type() == type) return &candidate;
    i = candidate.term_.next;
  }
  return nullptr;
}

const Numeral& NumeralTable::insert(TermManagerKey key, std::uint64_t hash, const DataType* type,
                                    QNumber value, std::uint32_t id)
{
  make_room();
  const auto i = static_cast<Index>(size_);
  const Numeral* numeral = new (slot(i)) Numeral(key, type, std::move(value), id);
  ++size_;
  link(i, hash);
  return *numeral;
}

void NumeralTable::make_room()
{
  if (size_ == chunks_.size() * kChunkSize) chunks_.push_back(std::make_unique_for_overwrite<Chunk>());
  // There are at most five numerals for four buckets. So a numeral with its places in both tables takes about 64
  // bytes, and a search compares about one and a half numerals.
  if (4 * size_ >= 5 * by_symbol_.size()) grow();
}

void NumeralTable::grow()
{
  const std::size_t num_buckets = by_symbol_.size();
  // Small tables double, for time; large ones grow by half, for memory.
  const std::size_t growth = num_buckets < kManyBuckets ? num_buckets : num_buckets / 2;
  const PrimeModulus modulus = PrimeModulus::at_least(std::max(kFirstNumBuckets, num_buckets + growth));
  std::vector<Index> by_symbol(modulus.get(), kNone);
  std::vector<Index> by_value(modulus.get(), kNone);
  modulus_ = modulus;
  by_symbol_.swap(by_symbol);
  by_value_.swap(by_value);
  for (std::size_t i = 0; i < size_; ++i)
    link(static_cast<Index>(i), hash(at(i).value_, at(i).get_output_type()));
}

void NumeralTable::link(Index i, std::uint64_t hash) noexcept
{
  Numeral& numeral = *slot(i);
  Index& same_symbol_bucket = by_symbol_[get_bucket(&numeral)];
  Index& same_value_bucket = by_value_[get_value_bucket(hash)];
  numeral.next_ = same_symbol_bucket;
  numeral.term_.next = same_value_bucket;
  same_symbol_bucket = i;
  same_value_bucket = i;
}

std::size_t NumeralTable::get_chain_length(std::size_t i) const
{
  std::size_t length = 0;
  for (Index next = by_symbol_[i]; next != kNone; next = at(next).next_)
    ++length;
  return length;
}

}  // namespace lumo
