#ifndef LUMO_SMTLIB_PRINTED_TERMS_H
#define LUMO_SMTLIB_PRINTED_TERMS_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "lumo/elimination/trail.h"
#include "lumo/smtlib/name_printer.h"
#include "lumo/terms/chunked_vector.h"
#include "lumo/terms/term_manager.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo::smtlib {

/// All terms of a text that is going to be printed, and where each is printed.
///
/// The text consists of pieces: the terms that single SMT-LIB commands contain. A term that is used twice in its piece
/// is bound by a `let` at the piece's front. So is a term that lies deep in its piece, since many solvers recurse
/// once per level of what they read.
///
/// A chain of applications of one associative operator, each the first argument of the next and used nowhere else, is
/// printed flat, as one application to many arguments: (f (f a b) c) is (f a b c). Readers nest such applications
/// from the left, so they get the same terms back.
///
/// Applications, and constants that are defined, get slots, counted from 0: each after all that it needs. The walks
/// are iterative. Time is linear in the number of terms; memory is 4 bytes for each id up to the largest, 20 bytes
/// for each slot, 8 bytes for each other constant, and during the walk 8 bytes for each level.
class PrintedTerms
{
 public:
  using Slot = std::uint32_t;

  struct Node
  {
    /// The piece in which an application is printed
    std::uint32_t piece;
    /// In how many layers of `let` the names that an application needs are bound; once it is known where all is
    /// printed, instead: of a defined constant the number of its step, of an inner member of a chain the slot of
    /// the application that it is the first argument of, of what has a name the number in the name
    std::uint32_t number = 0;
    /// How many applications nest down to the next leaf or name; a chain counts as one
    std::uint16_t height = 0;
    /// How often an application is printed or named, up to 2
    std::uint8_t num_uses : 2 = 0;
    bool is_bound : 1 = false;       ///< by a `let`
    bool has_own_piece : 1 = false;  ///< whether a command of its own defines the application
    bool is_inner : 1 = false;       ///< whether the next member of the chain prints its arguments
    bool is_step : 1 = false;        ///< whether it is a constant that a step defines
    bool is_quoted : 1 = false;      ///< whether such a constant's name stands between bars
  };
  static_assert(sizeof(Node) == 12);

  /// What is bound in a piece. If two are bound in the same layer of one piece, neither needs the other.
  struct Binding
  {
    std::uint32_t piece;
    std::uint32_t layer;  ///< counted from 0
    Slot slot;

    friend auto operator<=>(const Binding&, const Binding&) = default;
  };

  /// Prepares for terms with ids below a number. The steps define constants, each by its application; they must stay
  /// where they are. A constant that has two definitions is an `Exception`.
  explicit PrintedTerms(std::size_t num_ids, std::span<const Step> steps = {});

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
  /// Gives the memory of the walks back.
  void finish_adding() { open_.clear(); }
  /// Decides what is bound and what is flat, once piece and uses of every slot are known. Bindings are sorted.
  void choose_bindings();

  [[nodiscard]] std::size_t get_num_slots() const { return nodes_.size(); }
  [[nodiscard]] Node& get_node(std::size_t slot) { return nodes_[slot]; }
  [[nodiscard]] const Term* get_term(std::size_t slot) const { return terms_[slot]; }
  /// Precondition: the term was added, and is an application or a defined constant.
  [[nodiscard]] Slot get_slot(const Term* t) const { return codes_[t->get_id()] - kFirstSlot; }
  /// Whether a step defines the constant.
  [[nodiscard]] bool is_defined(const Term* constant) const;
  /// What a slot's definition contains: the term, or for a defined constant the step's application.
  [[nodiscard]] const Term* get_slot_body(std::size_t slot) const
  {
    return nodes_[slot].is_step ? steps_[nodes_[slot].number].application : terms_[slot];
  }
  /// Whether the name of a constant that was added stands between bars.
  [[nodiscard]] bool is_quoted(const Term* constant) const;

  /// The constants without a definition, in the order in which the walks came upon them.
  [[nodiscard]] std::vector<const Term*>& get_constants() { return constants_; }
  /// A prefix such that no constant's name is the prefix and a number.
  [[nodiscard]] std::string make_free_prefix() const { return names_.make_free_prefix(); }
  /// What is bound at the front of a piece, in the order of the layers. To be asked for all pieces in their
  /// order.
  [[nodiscard]] std::span<const Binding> take_bound(std::uint32_t piece);

 private:
  // What is known of a term, by its id: nothing; a leaf, which for a constant is one that may need bars; a slot plus
  // kFirstSlot; or a defined constant before it has a slot, with the number of its step.
  static constexpr std::uint32_t kUnknown = 0;
  static constexpr std::uint32_t kLeaf = 1;
  static constexpr std::uint32_t kQuotedLeaf = 2;
  static constexpr std::uint32_t kFirstSlot = 3;
  static constexpr std::uint32_t kDefined = std::uint32_t{1} << 31U;
  static constexpr std::uint32_t kOpen = std::uint32_t{1}
                                         << 30U;  ///< with kDefined, while the walk is below it

  [[nodiscard]] const Term* get_body(const Term* t) const;
  bool open_if_new(const Term* t);
  void open_definition(const Term* constant, std::uint32_t& code);
  void note_leaf(const Term* t, std::uint32_t& code);
  [[nodiscard]] bool open_argument(const Term* body);
  Slot close(const Term* t);

  void place(Slot slot);
  void bind(Slot slot);

  std::span<const Step> steps_;
  std::vector<std::uint32_t> codes_;  ///< by the term's id
  ChunkedVector<const Term*> terms_;  ///< by slot
  ChunkedVector<Node> nodes_;         ///< by slot
  std::vector<const Term*> constants_;
  ConstantNames names_;
  ChunkedVector<const Term*> open_;  ///< the path of the walk
  std::vector<Binding> bindings_;
  std::size_t num_taken_ = 0;  ///< of the bindings
};

}  // namespace lumo::smtlib

#pragma GCC visibility pop

#endif
