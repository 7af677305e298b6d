#include "lumo/smtlib/symbol_table.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "lumo/numbers/hash_mix.h"
#include "lumo/smtlib/nearest_word.h"

namespace lumo::smtlib {

namespace {

constexpr std::size_t kFirstSize = 256;
constexpr std::size_t kPieceSize = std::size_t{1} << 14U;

struct Word
{
  std::string_view text;
  ReservedWord word;
};

constexpr Word kWords[] = {
    {"!", ReservedWord::kAnnotation},  {"_", ReservedWord::kIndexed},     {"as", ReservedWord::kAs},
    {"exists", ReservedWord::kBinder}, {"forall", ReservedWord::kBinder}, {"lambda", ReservedWord::kBinder},
    {"let", ReservedWord::kLet},       {"match", ReservedWord::kBinder},
};

template <class Word>
std::uint64_t load(const char* from)
{
  Word word;
  std::memcpy(&word, from, sizeof word);
  return word;
}

/// Most names are short: two words, which may overlap, contain a whole name.
std::uint32_t hash_text(std::string_view text)
{
  const char* data = text.data();
  const std::size_t size = text.size();
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  if (size > 16) {
    first = std::hash<std::string_view>()(text);
  } else if (size >= 8) {
    first = load<std::uint64_t>(data);
    last = load<std::uint64_t>(data + size - 8);
  } else if (size >= 4) {
    first = load<std::uint32_t>(data);
    last = load<std::uint32_t>(data + size - 4);
  } else if (size > 0) {
    first = load<std::uint8_t>(data);
    last = load<std::uint8_t>(data + size / 2) << 8U | load<std::uint8_t>(data + size - 1);
  }
  return static_cast<std::uint32_t>(mix_hash((first + size) * 0x9e3779b97f4a7c15U, last));
}

}  // namespace

SymbolTable::SymbolTable(TermManager& mgr) : places_(kFirstSize)
{
  for (const Operator& op : list_operators())
    set_meaning(find(op.name), Meaning(&op));
  set_meaning(find("true"), Meaning(mgr.make_true()));
  set_meaning(find("false"), Meaning(mgr.make_false()));
  num_predefined_ = entries_.size();
  for (const Word& word : kWords)
    entries_[find(word.text)].reserved = word.word;
}

SymbolTable::Number SymbolTable::find(std::string_view text)
{
  const std::uint32_t hash = hash_text(text);
  const std::size_t mask = places_.size() - 1;
  for (std::size_t i = hash & mask; places_[i].number != kEmpty; i = (i + 1) & mask) {
    if (places_[i].hash == hash && entries_[places_[i].number].get_text() == text) return places_[i].number;
  }
  return add(text, hash);
}

void SymbolTable::declare(Number symbol, const Meaning& meaning)
{
  declared_.push_back(symbol);
  entries_[symbol].meaning = meaning;
}

void SymbolTable::forget(std::size_t count)
{
  for (; declared_.size() > count; declared_.pop_back())
    entries_[declared_.back()].meaning = {};
}

std::string SymbolTable::find_nearest(std::string_view text) const
{
  std::string_view nearest;
  std::size_t least = kNotNear;
  for (const Entry& entry : entries_) {
    if (entry.meaning.is_none()) continue;
    const std::size_t distance = measure_word(text, entry.get_text());
    if (distance >= least) continue;
    nearest = entry.get_text();
    least = distance;
  }
  return std::string(nearest);
}

SymbolTable::Number SymbolTable::add(std::string_view text, std::uint32_t hash)
{
  if (2 * (entries_.size() + 1) > places_.size()) grow();
  const auto number = static_cast<Number>(entries_.size());
  entries_.push_back({keep(text), static_cast<std::uint32_t>(text.size())});
  put({hash, number});
  return number;
}

void SymbolTable::put(const Place& place)
{
  const std::size_t mask = places_.size() - 1;
  std::size_t i = place.hash & mask;
  while (places_[i].number != kEmpty)
    i = (i + 1) & mask;
  places_[i] = place;
}

void SymbolTable::grow()
{
  std::vector<Place> places(2 * places_.size());
  places.swap(places_);
  for (const Place& place : places) {
    if (place.number != kEmpty) put(place);
  }
}

const char* SymbolTable::keep(std::string_view text)
{
  if (text.size() > num_left_) {
    num_left_ = std::max(kPieceSize, text.size());
    next_ = texts_.emplace_back(std::make_unique_for_overwrite<char[]>(num_left_)).get();
  }
  std::copy(text.begin(), text.end(), next_);
  const char* kept = next_;
  next_ += text.size();
  num_left_ -= text.size();
  return kept;
}

}  // namespace lumo::smtlib
