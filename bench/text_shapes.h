#ifndef LUMO_BENCH_TEXT_SHAPES_H
#define LUMO_BENCH_TEXT_SHAPES_H

#include <array>
#include <cstddef>
#include <string>

namespace lumo::bench {

/// A script of about n applications whose text has a shape that is hard for some method of reading.
struct TextShape
{
  const char* name;
  std::string (*make)(std::size_t n);
};

/// Many small assertions.
[[nodiscard]] std::string make_wide_text(std::size_t n);
/// One term that is nested in its last argument.
[[nodiscard]] std::string make_deep_text(std::size_t n);
/// Assertions that are chained by the constants that they share.
[[nodiscard]] std::string make_link_text(std::size_t n);
/// One constant under layers of products and complements.
[[nodiscard]] std::string make_spine_text(std::size_t n);
/// Lets, each in the body of the previous one, that contain the variable of the previous one twice.
[[nodiscard]] std::string make_lets_text(std::size_t n);
/// Definitions without parameters that contain the previous one twice.
[[nodiscard]] std::string make_defs_text(std::size_t n);
/// Equations with hexadecimal literals of 1024 bits.
[[nodiscard]] std::string make_hex_text(std::size_t n);

inline constexpr std::array<TextShape, 7> kTextShapes = {{
    {"wide", make_wide_text},
    {"deep", make_deep_text},
    {"link", make_link_text},
    {"spine", make_spine_text},
    {"lets", make_lets_text},
    {"defs", make_defs_text},
    {"hex", make_hex_text},
}};

}  // namespace lumo::bench

#endif
