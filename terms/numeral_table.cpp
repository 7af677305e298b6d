#include "terms/numeral_table.h"

#include <utility>

namespace lumo {

namespace {

bool is_prime(std::size_t n)
{
  for (std::size_t d = 3; d * d <= n; d += 2) {
    if (n % d == 0) return false;
  }
  return n % 2 != 0;
}

std::size_t next_prime(std::size_t n)
{
  while (!is_prime(n))
    ++n;
  return n;
}

constexpr std::size_t kFirstNumBuckets = 61;

}  // namespace

const NumeralTable::Entry& NumeralTable::insert(const Symbol* s, QNumber value, const Term* term)
{
  if (entries_.size() >= buckets_.size()) grow();
  Entry& entry = entries_.emplace_back(Entry{s, std::move(value), term, nullptr});
  Entry*& head = buckets_[bucket_of(s)];
  entry.next = head;
  head = &entry;
  return entry;
}

std::size_t NumeralTable::get_chain_length(std::size_t i) const
{
  std::size_t length = 0;
  for (const Entry* entry = buckets_[i]; entry != nullptr; entry = entry->next)
    ++length;
  return length;
}

void NumeralTable::grow()
{
  buckets_ =
      std::vector<Entry*>(buckets_.empty() ? kFirstNumBuckets : next_prime(2 * buckets_.size()), nullptr);
  for (Entry& entry : entries_) {
    Entry*& head = buckets_[bucket_of(entry.symbol)];
    entry.next = head;
    head = &entry;
  }
}

}  // namespace lumo
