#include "lumo/commands/progress.h"

#include <array>
#include <iomanip>
#include <sstream>
#include <string_view>

namespace lumo::commands {

namespace {

/// By phase
constexpr std::array<std::string_view, kNumPhases> kWords = {"waiting",    "reading",   "eliminating",
                                                             "solving",    "extending", "checking",
                                                             "certifying", "printing",  "writing"};

/// In groups of three digits
std::string make_count_text(std::size_t count)
{
  std::string text = std::to_string(count);
  for (std::size_t place = text.size(); place > 3;) {
    place -= 3;
    text.insert(place, 1, ',');
  }
  return text;
}

}  // namespace

std::string make_progress_text(Phase phase, std::size_t num_terms, double seconds)
{
  std::ostringstream text;
  text << kWords[static_cast<std::size_t>(phase)] << ": ";
  if (num_terms != 0) text << make_count_text(num_terms) << (num_terms == 1 ? " term, " : " terms, ");
  text << std::fixed << std::setprecision(1) << seconds << " s";
  return std::move(text).str();
}

}  // namespace lumo::commands
