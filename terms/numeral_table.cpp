#include "terms/numeral_table.h"

#include <new>
#include <utility>

#include "numbers/hash_mix.h"

namespace lumo {

namespace {

constexpr std::size_t kFirstNumBuckets = 61;

}  // namespace

void NumeralTable::Buckets::grow()
{
  const PrimeModulus wider =
      PrimeModulus::at_least(heads.empty() ? kFirstNumBuckets : heads.size() + heads.size() / 2);
  heads = std::vector<Index>(wider.get(), kNone);
  modulus = wider;
}

NumeralTable::~NumeralTable()
{
  for (std::size_t i = 0; i < size_; ++i)
    slot(i)->~Numeral();
}

std::uint64_t NumeralTable::make_key(const QNumber& value, const DataType* type)
{
  return mix_hash(value.hash(), type->get_width());
}

const Numeral* NumeralTable::find(const QNumber& value, const DataType* type) const
{
  if (empty()) return nullptr;
  for (Index i = by_value_.get_head(make_key(value, type)); i != kNone;) {
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
  link_symbol(i);
  link_value(i);
  return *numeral;
}

void NumeralTable::make_room()
{
  if (size_ == chunks_.size() * kChunkSize) {
    chunks_.push_back(std::make_unique<Chunk>());
  }
  // The tables are as full as lets a numeral with its places in them take 64 bytes: at most five symbols in four
  // buckets, which are compared by address alone, and two values in one.
  if (4 * size_ >= 5 * by_symbol_.heads.size()) {
    by_symbol_.grow();
    for (std::size_t i = 0; i < size_; ++i)
      link_symbol(static_cast<Index>(i));
  }
  if (size_ >= 2 * by_value_.heads.size()) {
    by_value_.grow();
    for (std::size_t i = 0; i < size_; ++i)
      link_value(static_cast<Index>(i));
  }
}

void NumeralTable::link_symbol(Index i) noexcept
{
  Numeral& numeral = *slot(i);
  numeral.symbol_.next = by_symbol_.push(make_key(numeral.get_symbol()), i);
}

void NumeralTable::link_value(Index i) noexcept
{
  Numeral& numeral = *slot(i);
  numeral.term_.next = by_value_.push(make_key(numeral.value_, numeral.symbol_.get_output_type()), i);
}

std::size_t NumeralTable::get_chain_length(std::size_t i) const
{
  std::size_t length = 0;
  for (Index next = by_symbol_.heads[i]; next != kNone; next = at(next).symbol_.next)
    ++length;
  return length;
}

}  // namespace lumo
