#ifndef LUMO_SMTLIB_FOREIGN_TERMS_H
#define LUMO_SMTLIB_FOREIGN_TERMS_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lumo/smtlib/foreign_sorts.h"
#include "lumo/terms/term_manager.h"
#include "lumo/terms/term_table.h"
#include "lumo/terms/unique_table.h"

namespace lumo::smtlib {

/// What a foreign term is, for those who evaluate it or print it.
enum class ForeignRole : std::uint8_t
{
  kDeclared,       ///< an application of what the script declares, without arguments, too
  kSelect,         ///< the arguments of all of these are those of the standard
  kStore,          //
  kConstantArray,  //
  kIte,            //
  kEqual,          //
  kDistinct,       //
  kBinder,         ///< `forall`, `exists`
  kOther,          ///< anything else: lumo has no meaning for it
};

/// A command of a script that declares or defines something foreign.
struct ForeignDeclaration
{
  std::string text;                    ///< the whole command
  std::size_t order = 0;               ///< in the script
  bool is_of_sorts = false;            ///< always printed
  std::vector<std::size_t> needs;      ///< other declarations
  std::vector<const Term*> constants;  ///< that it mentions, also placeholders of foreign ones
};

/// A function or a constant that a script declares, of any sorts.
struct ForeignFunction
{
  static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

  std::string name;  ///< as it is written, without bars
  std::vector<const DataType*> parameters;
  const DataType* result = nullptr;
  std::size_t num_sort_parameters = 0;  ///< of a datatype with parameters
  std::size_t declaration = kNone;      ///< the command that must be printed for it
  bool is_interpreted = false;          ///< of a datatype, or defined: a model gives it no meaning
};

/// The head of a foreign term: everything but its arguments.
struct ForeignHead
{
  std::string
      text;  ///< SMT-LIB 2 text: `select`, `(_ to_fp 11 53)`, `((as const (Array ...))`, or all of a binder
  ForeignRole role = ForeignRole::kOther;
  const ForeignFunction* function = nullptr;  ///< of a declared one; null for an element of a sort
  /// Of a binder: the names that stand for its first arguments. Its other arguments are constants that it mentions.
  std::vector<std::string> names{};
  std::vector<std::size_t> declarations{};  ///< that must be printed for it
};

/// The terms of a script that the term layer does not have. Each is a head applied to arguments, which are terms of the
/// manager; a constant of the manager, its *placeholder*, represents it there. So terms contain foreign terms, and
/// foreign terms contain terms.
///
/// I1. There is one placeholder for each distinct foreign term, and its name is that of no constant of a text.
/// I2. The arguments of a foreign term, and the foreign terms in them, were made before it. So the order of numbers is
///     one in which they can be evaluated.
class ForeignTerms
{
 public:
  using HeadIndex = std::uint32_t;
  using Index = std::uint32_t;
  static constexpr Index kNone = std::numeric_limits<Index>::max();

  /// The manager must outlive the object.
  explicit ForeignTerms(TermManager& mgr) : sorts(mgr), mgr_(mgr) {}
  ForeignTerms(const ForeignTerms&) = delete;
  ForeignTerms& operator=(const ForeignTerms&) = delete;

  /// The head that is the same but for its address.
  [[nodiscard]] HeadIndex make_head(ForeignHead head);
  [[nodiscard]] const ForeignHead& get_head(HeadIndex head) const { return heads_[head]; }

  /// The placeholder of a foreign term.
  [[nodiscard]] const Term* make(HeadIndex head, const DataType* sort, std::span<const Term* const> args);
  [[nodiscard]] bool empty() const { return nodes_.empty(); }
  [[nodiscard]] std::size_t size() const { return nodes_.size(); }
  /// The foreign term of a placeholder; kNone if the term is none.
  [[nodiscard]] Index find(const Term* t) const
  {
    if (nodes_.empty()) return kNone;
    const Index* place = by_id_.find(t->get_id());
    return place == nullptr ? kNone : *place - 1;
  }
  [[nodiscard]] const ForeignHead& get_head_of(Index term) const { return heads_[nodes_[term].head]; }
  [[nodiscard]] HeadIndex get_head_index(Index term) const { return nodes_[term].head; }
  [[nodiscard]] const Term* get_placeholder(Index term) const { return nodes_[term].placeholder; }
  [[nodiscard]] std::span<const Term* const> get_args(Index term) const
  {
    return std::span(args_).subspan(nodes_[term].first, nodes_[term].num_args);
  }

  /// A number that is larger than the ids of all terms of the manager.
  [[nodiscard]] std::size_t get_num_ids() const { return mgr_.get_num_terms(); }
  [[nodiscard]] TermManager& get_manager() const { return mgr_; }

  /// The foreign terms in some terms and in each other's arguments, in ascending order. The walk is iterative and takes
  /// time in proportion to the terms.
  [[nodiscard]] std::vector<Index> collect(std::span<const Term* const> roots) const;
  /// What some terms need of the script.
  struct Needs
  {
    std::vector<Index> terms;               ///< foreign ones, in ascending order
    std::vector<std::size_t> declarations;  ///< in the order of the script
    std::vector<const Term*> constants;     ///< that the declarations mention
  };
  [[nodiscard]] Needs find_needs(std::span<const Term* const> roots) const;
  /// What the heads of these terms need. The constants may need more.
  [[nodiscard]] Needs list_declarations(std::span<const Index> terms) const;
  /// The next place in the order of declarations.
  [[nodiscard]] std::size_t make_order() { return num_orders_++; }

  ForeignSortTable sorts;
  std::deque<ForeignFunction> functions;
  std::vector<ForeignDeclaration> declarations;
  bool has_elements = false;  ///< whether `(as @name S)` is an element of S, as in models
  std::string logic;          ///< that the script sets; empty if none

 private:
  struct Node
  {
    const Term* placeholder;
    std::size_t first;  ///< of its arguments in `args_`
    std::uint32_t num_args;
    HeadIndex head;
  };

  TermManager& mgr_;
  std::deque<ForeignHead> heads_;
  std::unordered_map<std::string, HeadIndex> head_numbers_;
  std::vector<Node> nodes_;
  std::vector<const Term*> args_;
  UniqueTable numbers_;
  std::size_t num_orders_ = 0;
  TermTable<Index> by_id_;  ///< the number of a placeholder's term, plus 1
};

/// Foreign terms whose arguments elimination has replaced by others of the same value.
class ForeignForms
{
 public:
  /// The terms must outlive the object.
  explicit ForeignForms(const ForeignTerms& terms) : terms_(terms) {}

  [[nodiscard]] const ForeignTerms& get_terms() const { return terms_; }
  /// Replaces an argument wherever it occurs.
  void replace(const Term* t, const Term* form) { forms_[t->get_id()] = form; }
  [[nodiscard]] const Term* get_arg(ForeignTerms::Index term, std::size_t i) const
  {
    const Term* arg = terms_.get_args(term)[i];
    const Term* const* form = forms_.find(arg->get_id());
    return form == nullptr || *form == nullptr ? arg : *form;
  }

 private:
  const ForeignTerms& terms_;
  TermTable<const Term*> forms_;
};

}  // namespace lumo::smtlib

#endif
