#ifndef LUMO_TERMS_TEXT_KEY_H
#define LUMO_TERMS_TEXT_KEY_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>

#include "lumo/numbers/hash_mix.h"

namespace lumo {

/// A text by which something is looked up. Two words, which may overlap, hold all of a text of up to kShort characters but
/// its last one, so that most names are hashed and compared as words.
///
/// Texts that differ only in their last characters have neighbouring hashes. Scripts number their names and use them in
/// their order, so the places of such names in a table, next to each other, are in the cache when they are needed.
struct TextKey
{
  static constexpr std::size_t kShort = 17;
  static constexpr std::uint32_t kLong = ~std::uint32_t{0};

  explicit TextKey(std::string_view text)
  {
    if (text.empty()) return;
    const char* data = text.data();
    const std::size_t size = text.size() - 1;
    if (size >= 8) {
      if (size >= kShort) {
        first = std::hash<std::string_view>()(text);
        mark = kLong;
        return;
      }
      first = load<std::uint64_t>(data);
      last = load<std::uint64_t>(data + size - 8);
    } else if (size >= 4) {
      first = load<std::uint32_t>(data);
      last = load<std::uint32_t>(data + size - 4);
    } else if (size > 0) {
      first = load<std::uint8_t>(data) << 8U | load<std::uint8_t>(data + size / 2);
      last = load<std::uint8_t>(data + size - 1);
    }
    mark = static_cast<std::uint32_t>(load<std::uint8_t>(data + size) << 8U | text.size());
  }

  /// Whether the words and the mark are all of the text.
  [[nodiscard]] bool is_short() const { return mark != kLong; }
  /// Its size; the text is short.
  [[nodiscard]] std::size_t get_size() const { return mark & 0xffU; }

  [[nodiscard]] std::uint64_t hash() const
  {
    // Groups of at most four: with larger ones, searches pass more places than they gain.
    constexpr std::uint32_t kNeighbours = 3;
    const std::uint64_t group = mark & ~(kNeighbours << 8U);
    const std::uint64_t front =
        multiply_and_fold(first ^ kHashFirst, (last + group * kHashFirst) ^ kHashSecond);
    return (front & ~std::uint64_t{kNeighbours}) + (mark >> 8U & kNeighbours);
  }

  std::uint64_t first = 0;  ///< of a long text, a hash
  std::uint64_t last = 0;   ///< of a long text, 0
  std::uint32_t mark = 0;   ///< of a short text, its last character and its size

 private:
  template <class Word>
  [[nodiscard]] static std::uint64_t load(const char* from)
  {
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
  }
};

}  // namespace lumo

#endif
