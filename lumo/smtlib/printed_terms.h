#ifndef LUMO_SMTLIB_PRINTED_TERMS_H
#define LUMO_SMTLIB_PRINTED_TERMS_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "lumo/elimination/trail.h"
#include "lumo/smtlib/foreign_terms.h"
#include "lumo/smtlib/name_printer.h"
#include "lumo/terms/chunked_vector.h"
#include "lumo/terms/term_manager.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo::smtlib {

/// All terms of a text that will be printed, and where each is printed.
///
/// The text consists of pieces: the terms that single SMT-LIB commands contain. If a term is used twice in its piece,
/// a `let` at the piece's front binds it. So does one for a term deep in its piece, since many solvers recurse
/// once per level of a term.
///
/// A chain of applications of one associative operator, each the first argument of the next and used nowhere else, is
/// printed flat, as one application to many arguments: (f (f a b) c) is (f a b c). Readers nest these arguments
/// from the left, so they get the same terms back.
///
/// Applications, and constants that are defined, get slots, counted from 0: each after all the slots that it needs.
/// The walks are iterative. Time is linear in the number of terms; memory is 4 bytes for each id up to the largest,
/// 20 bytes for each slot, 8 bytes for each other constant, and during the walk 8 bytes for each level.
class PrintedTerms
{
 public:
  using Slot = std::uint32_t;

  struct Node
  {
    /// The piece in which an application is printed
    std::uint32_t piece;
    /// First the number of `let` layers that bind the names that an application needs. Once all positions are known,
    /// instead: for a defined constant the number of its step; for an inner member of a chain the slot of
    /// the application whose first argument it is; for a named application the number in its name
    std::uint32_t number = 0;
    /// The number of nested applications down to the next leaf or name; a chain counts as one
    std::uint16_t height = 0;
    /// How often an application is printed or named, up to 2
    std::uint8_t num_uses : 2 = 0;
    bool is_bound : 1 = false;       ///< by a `let`
    bool has_own_piece : 1 = false;  ///< whether a separate command defines the application
    bool is_inner : 1 = false;       ///< whether the next member of the chain prints its arguments
    bool is_step : 1 = false;        ///< whether it is a constant that a step defines
    bool is_quoted : 1 = false;      ///< whether the name of such a constant needs bars
  };
  static_assert(sizeof(Node) == 12);

  /// A binding in a piece. Two bindings in the same layer of one piece are independent of each other.
  struct Binding
  {
    std::uint32_t piece;
    std::uint32_t layer;  ///< counted from 0
    Slot slot;

    // NOLINTNEXTLINE(modernize-use-nullptr): the check finds a null pointer in code of the compiler
    friend auto operator<=>(const Binding&, const Binding&) = default;
  };

  /// Prepares for terms with ids below num_ids. The steps define constants, each by its application; they must
  /// outlive the object. Throws an `Exception` if a constant has two definitions.
  explicit PrintedTerms(std::size_t num_ids, std::span<const Step> steps = {})
      : PrintedTerms(num_ids, steps, nullptr)
  {}
  /// The same; placeholders are printed as the foreign terms that they stand for. The forms, which may be null, must
  /// outlive the object.
  PrintedTerms(std::size_t num_ids, std::span<const Step> steps, const ForeignForms* foreign);

  /// Takes a term and all that it needs, and calls `closed(slot)` for each new slot. A name that SMT-LIB 2 cannot
  /// spell is an `Exception`, and so is a constant that its own definition needs.
  template <class Closed>
  void add(const Term* root, const Closed& closed)
  {
    open_if_new(root);
    while (!open_.empty()) {
      const Term* t = open_.back();
      if (!open_argument(get_body(t))) closed(close(t));
    }
  }
  /// Frees the memory of the walks.
  void finish_adding() { open_.clear(); }
  /// Decides which terms are bound and which are flat. Precondition: piece and uses of every slot are known. Sorts
  /// the bindings.
  void choose_bindings();

  [[nodiscard]] std::size_t get_num_slots() const { return nodes_.size(); }
  [[nodiscard]] Node& get_node(std::size_t slot) { return nodes_[slot]; }
  [[nodiscard]] const Term* get_term(std::size_t slot) const { return terms_[slot]; }
  /// Precondition: the term was added, and is an application or a defined constant.
  [[nodiscard]] Slot get_slot(const Term* t) const { return codes_[t->get_id()] - kFirstSlot; }
  /// Whether a step defines the constant.
  [[nodiscard]] bool is_defined(const Term* constant) const;
  /// The body of a slot's definition: the term, or for a defined constant the step's application.
  [[nodiscard]] const Term* get_slot_body(std::size_t slot) const
  {
    return nodes_[slot].is_step ? steps_[nodes_[slot].number].application : terms_[slot];
  }
  /// Whether the name of a constant that was added needs bars.
  [[nodiscard]] bool is_quoted(const Term* constant) const;

  /// The arguments that are printed after the head of a term: its own, or those of the foreign term that it stands for.
  [[nodiscard]] std::size_t get_num_args(const Term* t) const
  {
    const std::size_t num_args = t->get_num_args();
    return num_args != 0 || foreign_ == nullptr ? num_args : get_num_foreign_args(t);
  }
  [[nodiscard]] const Term* get_arg(const Term* t, std::size_t i) const
  {
    if (t->get_num_args() != 0) [[likely]]
      return t->get_arg(i);
    return foreign_->get_arg(find_foreign(t), i);
  }
  /// The foreign term that a term stands for, or ForeignTerms::kNone.
  [[nodiscard]] ForeignTerms::Index find_foreign(const Term* t) const
  {
    return foreign_ == nullptr ? ForeignTerms::kNone : foreign_->get_terms().find(t);
  }
  [[nodiscard]] const ForeignHead& get_foreign_head(ForeignTerms::Index term) const
  {
    return foreign_->get_terms().get_head_of(term);
  }
  /// The foreign terms that were added, in the order in which the walks reached them.
  [[nodiscard]] const std::vector<ForeignTerms::Index>& get_foreign() const { return foreign_met_; }

  /// The constants without a definition, in the order in which the walks reached them.
  [[nodiscard]] std::vector<const Term*>& get_constants() { return constants_; }
  /// A prefix such that no constant's name is the prefix and a number.
  [[nodiscard]] std::string make_free_prefix() const { return names_.make_free_prefix(); }
  /// The bindings at the front of a piece, in the order of the layers. Call this for all pieces in their
  /// order.
  [[nodiscard]] std::span<const Binding> take_bound(std::uint32_t piece);

 private:
  // The code of a term, by its id: unknown; a leaf, possibly a constant that needs bars; a slot plus
  // kFirstSlot; or, for a defined constant without a slot yet, the number of its step.
  static constexpr std::uint32_t kUnknown = 0;
  static constexpr std::uint32_t kLeaf = 1;
  static constexpr std::uint32_t kQuotedLeaf = 2;
  static constexpr std::uint32_t kFirstSlot = 3;
  static constexpr std::uint32_t kDefined = std::uint32_t{1} << 31U;
  static constexpr std::uint32_t kOpen = std::uint32_t{1}
                                         << 30U;  ///< with kDefined, while the walk is below it

  [[nodiscard]] const Term* get_body(const Term* t) const;
  [[nodiscard]] std::size_t get_num_foreign_args(const Term* t) const;
  bool open_if_new(const Term* t);
  void open_definition(const Term* constant, std::uint32_t& code);
  void note_leaf(const Term* t, std::uint32_t& code);
  [[nodiscard]] bool open_argument(const Term* body);
  Slot close(const Term* t);

  void place(Slot slot);
  void bind(Slot slot);

  std::span<const Step> steps_;
  const ForeignForms* foreign_;
  std::vector<ForeignTerms::Index> foreign_met_;
  std::vector<std::uint32_t> codes_;  ///< by the term's id
  ChunkedVector<const Term*> terms_;  ///< by slot
  ChunkedVector<Node> nodes_;         ///< by slot
  std::vector<const Term*> constants_;
  ConstantNames names_;
  ChunkedVector<const Term*> open_;  ///< the path of the walk
  std::vector<Binding> bindings_;
  std::size_t num_taken_ = 0;  ///< number of bindings that were taken
};

}  // namespace lumo::smtlib

#pragma GCC visibility pop

#endif
