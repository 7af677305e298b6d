#include "lumo/smtlib/symbol_table.h"

#include <algorithm>
#include <cstring>

#include "lumo/smtlib/nearest_word.h"

namespace lumo::smtlib {

namespace {

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

}  // namespace

SymbolTable::SymbolTable(TermManager& mgr)
{
  for (const Operator& op : list_operators())
    set_meaning(find(op.name), Meaning(&op));
  set_meaning(find("true"), Meaning(mgr.make_true()));
  set_meaning(find("false"), Meaning(mgr.make_false()));
  num_predefined_ = entries_.size();
  reserved_words_.resize(num_predefined_, ReservedWord::kNone);
  for (const Word& word : kWords) {
    static_cast<void>(find(word.text));
    reserved_words_.push_back(word.word);
  }
}

std::string_view SymbolTable::get_text(Number symbol) const
{
  const Entry& entry = entries_[symbol];
  if (entry.mark == TextKey::kLong) return long_texts_[entry.last];
  const auto [place, is_new] = requested_texts_.try_emplace(symbol);
  if (is_new) place->second = make_text(entry);
  return place->second;
}

void SymbolTable::declare(Number symbol, const Meaning& meaning)
{
  declared_.push_back(symbol);
  set_meaning(symbol, meaning);
}

void SymbolTable::forget(std::size_t count)
{
  for (; declared_.size() > count; declared_.pop_back())
    set_meaning(declared_.back(), {});
}

std::string SymbolTable::find_nearest(std::string_view text) const
{
  std::string nearest;
  std::size_t least = kNotNear;
  for (Number symbol = 0; symbol < entries_.size(); ++symbol) {
    if (entries_[symbol].is_none()) continue;
    std::string known = make_text(entries_[symbol]);
    const std::size_t distance = measure_word(text, known);
    if (distance >= least) continue;
    nearest = std::move(known);
    least = distance;
  }
  return nearest;
}

std::string SymbolTable::make_text(const Entry& entry) const
{
  if (entry.mark == TextKey::kLong) return long_texts_[entry.last];
  const std::size_t size = entry.mark & 0xffU;
  if (size == 0) return {};
  // What TextKey has loaded is stored where it was.
  std::string text(size, static_cast<char>(entry.mark >> 8U));
  const auto store = [&text](std::size_t place, auto word) { std::memcpy(&text[place], &word, sizeof word); };
  if (size > 8) {
    store(0, entry.first);
    store(size - 9, entry.last);
  } else if (size > 4) {
    store(0, static_cast<std::uint32_t>(entry.first));
    store(size - 5, static_cast<std::uint32_t>(entry.last));
  } else if (size > 1) {
    store(0, static_cast<std::uint8_t>(entry.first >> 8U));
    store((size - 1) / 2, static_cast<std::uint8_t>(entry.first));
    store(size - 2, static_cast<std::uint8_t>(entry.last));
  }
  return text;
}

SymbolTable::Number SymbolTable::add(std::string_view text, TextKey key, std::uint64_t hash)
{
  numbers_.reserve_one();
  if (!key.is_short()) {
    key.last = long_texts_.size();
    long_texts_.emplace_back(text);
  }
  const auto number = static_cast<Number>(entries_.size());
  entries_.emplace_back(key);
  numbers_.insert(hash, number);
  return number;
}

}  // namespace lumo::smtlib
