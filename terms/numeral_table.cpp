#include "terms/numeral_table.h"

#include <algorithm>
#include <new>
#include <utility>

#include "numbers/hash_mix.h"

namespace lumo {

namespace {

constexpr std::size_t kFirstNumBuckets = 61;
constexpr std::size_t kManyBuckets = 5000;

}  // namespace

NumeralTable::~NumeralTable()
{
  for (std::size_t i = 0; i < size_; ++i)
    slot(i)->~Numeral();
}

std::size_t NumeralTable::get_bucket(const QNumber& value, const DataType* type) const
{
  __extension__ using Product = unsigned __int128;
  const std::uint64_t hash = mix_hash(value.hash(), type->get_width());
  return static_cast<std::size_t>((static_cast<Product>(hash) * by_value_.size()) >> 64U);
}

const Numeral* NumeralTable::find(const QNumber& value, const DataType* type) const
{
  if (empty()) return nullptr;
  for (Index i = by_value_[get_bucket(value, type)]; i != kNone;) {
    const Numeral& candidate = at(i);
    if (candidate.value_ == value && candidate.symbol_.get_output_type() == type) return &candidate;
    i = candidate.term_.next;
  }
  return nullptr;
}

const Numeral& NumeralTable::insert(TermManagerKey key, const DataType* type, QNumber value, std::uint32_t id)
{
  make_room();
  const auto i = static_cast<Index>(size_);
  const Numeral* numeral = new (slot(i)) Numeral(key, type, std::move(value), id);
  ++size_;
  link(i);
  return *numeral;
}

void NumeralTable::make_room()
{
  if (size_ == chunks_.size() * kChunkSize) chunks_.push_back(std::make_unique_for_overwrite<Chunk>());
  // Five numerals in four buckets at most: so a numeral with its places in both tables takes about 64 bytes, and a
  // search meets about one and a half of them.
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
    link(static_cast<Index>(i));
}

void NumeralTable::link(Index i) noexcept
{
  Numeral& numeral = *slot(i);
  Index& same_symbol_bucket = by_symbol_[get_bucket(numeral.get_symbol())];
  Index& same_value_bucket = by_value_[get_bucket(numeral.value_, numeral.symbol_.get_output_type())];
  numeral.symbol_.next = same_symbol_bucket;
  numeral.term_.next = same_value_bucket;
  same_symbol_bucket = i;
  same_value_bucket = i;
}

std::size_t NumeralTable::get_chain_length(std::size_t i) const
{
  std::size_t length = 0;
  for (Index next = by_symbol_[i]; next != kNone; next = at(next).symbol_.next)
    ++length;
  return length;
}

}  // namespace lumo
