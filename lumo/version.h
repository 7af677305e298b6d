#ifndef LUMO_VERSION_H
#define LUMO_VERSION_H

#include <string_view>

// The version of the headers. They are macros, so that the preprocessor can choose between interfaces.
#define LUMO_VERSION_MAJOR 0
#define LUMO_VERSION_MINOR 1
#define LUMO_VERSION_PATCH 0

namespace lumo {

/// The version of the headers as text, `major.minor.patch`.
inline constexpr std::string_view kVersion = "0.1.0";

}  // namespace lumo

#endif
