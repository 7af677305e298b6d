#include "lumo/solvers/solution_message.h"

#include <cstdint>
#include <cstring>
#include <unordered_map>
#include <utility>

#include <gmp.h>

#include "lumo/numbers/bvnumber.h"

namespace lumo::solvers {

namespace {

// A message is a letter for its kind; then the sentence or the reason, or the entries of the model, each an index
// and a value; then a mark for the end.
constexpr char kSat = 's';
constexpr char kUnsat = 'u';
constexpr char kUnknown = '?';
constexpr char kFailure = 'f';
constexpr char kOutOfMemory = 'm';
constexpr char kEndMark = '.';

using Index = std::uint32_t;

/// The lowest byte comes first in a value.
constexpr int kByteOrder = -1;

std::size_t count_bytes(const DataType* type) { return type->is_bool() ? 1 : (type->get_width() + 7) / 8; }

void write_value(const TermManager& mgr, std::string& message, const ModelValue& value)
{
  const DataType* type = value.constant->get_symbol()->get_output_type();
  const std::size_t start = message.size();
  message.append(count_bytes(type), '\0');
  const Symbol* symbol = value.value->get_symbol();
  if (type->is_bool()) {
    message[start] = symbol->get_kind() == Kind::kTrue ? 1 : 0;
  } else {
    const QNumber* number = mgr.find_number(symbol);
    mpz_export(message.data() + start, nullptr, kByteOrder, 1, 0, 0,
               number->view_numerator(QNumber::gmp_tmp[0]));
  }
}

char get_letter(Answer answer)
{
  switch (answer) {
    case Answer::kSat:
      return kSat;
    case Answer::kUnsat:
      return kUnsat;
    case Answer::kUnknown:
      break;
  }
  return kUnknown;
}

// -----------------------------------------------------------------------------------------------------------

[[noreturn]] void refuse() { throw SolverError("the built-in solver ended before its answer was complete"); }

/// Removes bytes from the front and returns them.
std::string_view take(std::string_view& text, std::size_t size)
{
  if (text.size() < size) refuse();
  const std::string_view front = text.substr(0, size);
  text.remove_prefix(size);
  return front;
}

const Term* read_value(TermManager& mgr, const DataType* type, std::string_view bytes)
{
  if (type->is_bool()) return bytes[0] != 0 ? mgr.make_true() : mgr.make_false();
  mpz_t number;
  mpz_init(number);
  mpz_import(number, bytes.size(), kByteOrder, 1, 0, 0, bytes.data());
  const QNumber value = BVNumber::from_integer(number);
  mpz_clear(number);
  return mgr.make_bv_number(value, type->get_width());
}

std::vector<ModelValue> read_model(TermManager& mgr, std::span<const Term* const> constants,
                                   std::string_view entries)
{
  std::vector<ModelValue> model;
  while (!entries.empty()) {
    Index index = 0;
    std::memcpy(&index, take(entries, sizeof index).data(), sizeof index);
    if (index >= constants.size()) refuse();
    const DataType* type = constants[index]->get_symbol()->get_output_type();
    model.push_back({constants[index], read_value(mgr, type, take(entries, count_bytes(type)))});
  }
  return model;
}

}  // namespace

std::string write_solution(const TermManager& mgr, const Solution& solution,
                           std::span<const Term* const> constants)
{
  std::unordered_map<const Term*, Index> index_of;
  for (const Term* constant : constants)
    index_of.emplace(constant, static_cast<Index>(index_of.size()));

  std::string message(1, get_letter(solution.answer));
  message += solution.reason;
  for (const ModelValue& value : solution.model) {
    const Index index = index_of.at(value.constant);
    message.append(reinterpret_cast<const char*>(&index), sizeof index);
    write_value(mgr, message, value);
  }
  return message + kEndMark;
}

std::string write_failure(std::string_view sentence)
{
  return std::string(1, kFailure).append(sentence) + kEndMark;
}

std::string write_out_of_memory() { return {kOutOfMemory, kEndMark}; }

Solution read_solution(TermManager& mgr, std::span<const Term* const> constants, std::string_view message)
{
  if (message.size() < 2 || message.back() != kEndMark) refuse();
  const char letter = message.front();
  message = message.substr(1, message.size() - 2);
  switch (letter) {
    case kSat:
      return {Answer::kSat, read_model(mgr, constants, message), {}};
    case kUnsat:
      return {Answer::kUnsat, {}, {}};
    case kUnknown:
      return {Answer::kUnknown, {}, std::string(message)};
    case kFailure:
      throw SolverError(std::string(message));
    case kOutOfMemory:
      throw SolverError("the built-in solver ran out of memory");
    default:
      refuse();
  }
}

}  // namespace lumo::solvers
