#include "lumo/commands/statistics.h"

#include <array>
#include <iomanip>
#include <numeric>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lumo/commands/text_escapes.h"

namespace lumo::commands {

namespace {

struct SizeRow
{
  std::string_view name;
  std::size_t GraphSize::*count;
};

constexpr std::array<SizeRow, 4> kSizeRows = {{
    {"assertions", &GraphSize::assertions},
    {"terms", &GraphSize::terms},
    {"applications", &GraphSize::applications},
    {"constants", &GraphSize::constants},
}};

struct TimeRow
{
  std::string_view name;
  Phase phase;
};

constexpr std::array<TimeRow, 6> kTimeRows = {{
    {"read", Phase::kRead},
    {"eliminate", Phase::kEliminate},
    {"solve", Phase::kSolve},
    {"extend", Phase::kExtend},
    {"check", Phase::kCheck},
    {"certify", Phase::kCertify},
}};

constexpr int kNameWidth = 16;
constexpr int kNumberWidth = 12;

using NamedCount = std::pair<std::string, std::size_t>;

/// The operators with eliminated applications. The two equalities have the same name, so the sort distinguishes
/// them.
std::vector<NamedCount> list_eliminated(const Statistics& statistics)
{
  std::vector<NamedCount> counts;
  for (std::size_t i = 0; i < kNumOperators; ++i) {
    if (statistics.eliminated[i] == 0) continue;
    std::string name(kOperators[i].smtlib_name);
    if (kOperators[i].kind == Kind::kIff) name += " (Bool)";
    counts.emplace_back(std::move(name), statistics.eliminated[i]);
  }
  return counts;
}

std::string make_seconds_text(double seconds)
{
  constexpr int kDigits = 6;
  std::ostringstream text;
  text << std::fixed << std::setprecision(kDigits) << seconds;
  return text.str();
}

/// The time for certificates is told only if there was one.
bool has_row(const TimeRow& row, const PhaseSeconds& seconds)
{
  return row.phase != Phase::kCertify || seconds[static_cast<std::size_t>(row.phase)] > 0;
}

template <class Value>
void print_row(std::ostream& out, std::string_view name, const Value& value)
{
  out << std::left << std::setw(kNameWidth) << name << std::right << std::setw(kNumberWidth) << value;
}

void print_size_json(std::ostream& out, const GraphSize& size)
{
  const char* separator = "{";
  for (const SizeRow& row : kSizeRows) {
    out << separator << '"' << row.name << "\": " << size.*row.count;
    separator = ", ";
  }
  out << '}';
}

}  // namespace

void Statistics::count_steps(const Trail& trail)
{
  steps += trail.steps.size();
  for (const Step& step : trail.steps) {
    if (step.original != nullptr)
      ++eliminated[static_cast<std::size_t>(step.original->get_symbol()->get_kind())];
  }
}

std::size_t Statistics::get_num_eliminated() const
{
  return std::accumulate(eliminated.begin(), eliminated.end(), std::size_t{0});
}

void print_statistics(std::ostream& out, const Statistics& statistics, const PhaseSeconds& seconds)
{
  print_row(out, "size", "before");
  out << std::setw(kNumberWidth) << "after" << '\n';
  for (const SizeRow& row : kSizeRows) {
    print_row(out, row.name, statistics.before.*row.count);
    out << std::setw(kNumberWidth) << statistics.after.*row.count << '\n';
  }
  print_row(out, "eliminated", statistics.get_num_eliminated());
  out << '\n';
  for (const NamedCount& count : list_eliminated(statistics)) {
    print_row(out, "  " + count.first, count.second);
    out << '\n';
  }
  print_row(out, "steps", statistics.steps);
  out << '\n';
  if (statistics.foreign_terms != 0) {
    print_row(out, "foreign terms", statistics.foreign_terms);
    out << '\n';
    print_row(out, "  not computed", statistics.believed_terms);
    out << '\n';
    print_row(out, "  not checked", statistics.believed_assertions);
    out << '\n';
  }
  if (!statistics.confirmer.empty())
    out << std::left << std::setw(kNameWidth) << "unsat"
        << "confirmed by " << statistics.confirmer << '\n';
  out << "seconds\n";
  for (const TimeRow& row : kTimeRows) {
    if (!has_row(row, seconds)) continue;
    print_row(out, "  " + std::string(row.name),
              make_seconds_text(seconds[static_cast<std::size_t>(row.phase)]));
    out << '\n';
  }
}

void print_statistics_json(std::ostream& out, const Statistics& statistics, const PhaseSeconds& seconds)
{
  out << "{\"before\": ";
  print_size_json(out, statistics.before);
  out << ", \"after\": ";
  print_size_json(out, statistics.after);
  out << ", \"steps\": " << statistics.steps << ", \"eliminated\": {";
  const char* separator = "";
  for (const NamedCount& count : list_eliminated(statistics)) {
    out << separator << make_json_string(count.first) << ": " << count.second;
    separator = ", ";
  }
  out << '}';
  if (statistics.foreign_terms != 0) {
    out << ", \"foreign\": {\"terms\": " << statistics.foreign_terms
        << ", \"not computed\": " << statistics.believed_terms
        << ", \"not checked\": " << statistics.believed_assertions << '}';
  }
  if (!statistics.confirmer.empty())
    out << ", \"unsat_confirmed_by\": " << make_json_string(statistics.confirmer);
  out << ", \"seconds\": {";
  separator = "";
  for (const TimeRow& row : kTimeRows) {
    if (!has_row(row, seconds)) continue;
    out << separator << '"' << row.name
        << "\": " << make_seconds_text(seconds[static_cast<std::size_t>(row.phase)]);
    separator = ", ";
  }
  out << "}}";
}

}  // namespace lumo::commands
