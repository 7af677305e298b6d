#ifndef LUMO_TERMS_FRESH_CONSTANTS_H
#define LUMO_TERMS_FRESH_CONSTANTS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace lumo {

class Term;

/// The fresh constants of a manager by prefix and number. The name of a fresh constant is `<prefix>!<number>`. So
/// it is found by its name without a table of names, and the name is made on demand.
class FreshConstants
{
 public:
  /// The constants of one prefix
  struct Family
  {
    std::vector<const Term*> members;       ///< by number; null if another constant has the name
    std::unordered_set<std::size_t> taken;  ///< larger numbers whose names other constants have
  };
  /// A place for a new member, with the memory for it
  struct Vacancy
  {
    const std::string* prefix;  ///< lives as long as the object
    Family* family;
    std::size_t number;
  };

  /// The next vacancy of the prefix. Repeated calls return the same one until it is filled.
  Vacancy make_vacancy(const std::string& prefix);
  /// Puts the constant of that prefix and number into the vacancy that was made last.
  static void fill(const Vacancy& vacancy, const Term* t) noexcept { vacancy.family->members.push_back(t); }
  /// The fresh constant of that name, or null.
  [[nodiscard]] const Term* find(std::string_view name) const;
  /// Notes that another constant has the name. Precondition: no fresh constant has it.
  void take(std::string_view name);
  /// Notes that no other constant has the name any more.
  void give_back(std::string_view name);
  /// Drops the constant of that number, and those of the same prefix that were made after it.
  void release(const std::string& prefix, std::size_t number);

 private:
  using Families = std::unordered_map<std::string, Family>;

  /// Forgets a prefix that has neither fresh constants nor taken numbers.
  void drop_if_empty(Families::iterator family);

  Families families_;
  Families::value_type* last_ = nullptr;  ///< the family of the last vacancy
};

}  // namespace lumo

#endif
