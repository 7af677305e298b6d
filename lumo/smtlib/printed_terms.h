#ifndef LUMO_SMTLIB_PRINTED_TERMS_H
#define LUMO_SMTLIB_PRINTED_TERMS_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// All terms of a text that is going to be printed, and where each is printed.
///
/// The text consists of pieces: the terms that single commands contain. A term that is used twice in its piece is
/// bound by a `let` at the piece's front. So is a term that lies deep in its piece, since many solvers recurse
/// once per level of what they read.
///
/// The walks are iterative; time and memory are linear in the number of terms.
class PrintedTerms
{
 public:
  static constexpr std::size_t kNoPiece = std::numeric_limits<std::size_t>::max();

  struct Node
  {
    /// The application that stands in the definition of a defined constant
    const Term* definition = nullptr;
    /// The piece in which an application is printed
    std::size_t piece = kNoPiece;
    /// The number in the name that stands for the application once it is printed, or 0
    std::uint32_t name = 0;
    /// In how many layers of `let` the names that the application needs are bound; if it is bound itself, then
    /// in the layer of that number, counted from 0
    std::uint32_t level = 0;
    /// How many applications nest down to the next leaf or name
    std::uint16_t height = 0;
    /// How often an application is printed or named, up to 2
    std::uint8_t num_uses = 0;
    bool is_bound = false;       ///< by a `let`
    bool has_own_piece = false;  ///< whether a command of its own defines the application
    bool is_seen = false;
    bool is_open = false;  ///< while the walk is below it
    bool is_printed = false;
    bool is_quoted = false;  ///< whether a constant's name stands between bars
  };

  /// Says that a constant is defined by an application: what that needs, the constant needs. A constant that is
  /// defined already is an `Exception`.
  void define(const Term* constant, const Term* application);
  /// Takes a term and all that it needs. A name that SMT-LIB 2 cannot spell is an `Exception`, and so is a
  /// constant that its own definition needs.
  void add(const Term* root);
  /// Decides what is bound, once the piece of every application is known.
  void choose_bindings();

  [[nodiscard]] Node& operator[](const Term* t) { return nodes_[t->get_id()]; }
  /// All terms, each behind all that it needs.
  [[nodiscard]] std::span<const Term* const> get_order() const { return order_; }
  /// The constants, in the order in which the walk came upon them.
  [[nodiscard]] std::span<const Term* const> get_constants() const { return constants_; }
  /// What is bound at the front of a piece, in the order of the layers. To be asked for all pieces in their
  /// order.
  [[nodiscard]] std::span<const Term* const> take_bound(std::size_t piece);

 private:
  struct Visit
  {
    const Term* term;
    const Term* body;  ///< whose arguments are visited
    std::size_t next;  ///< argument
  };

  [[nodiscard]] Node& make_node(const Term* t);
  void open(const Term* t);
  void close(const Term* t);
  void bind(const Term* t);

  std::vector<Node> nodes_;  ///< by the term's id
  std::vector<const Term*> order_;
  std::vector<const Term*> constants_;
  std::vector<const Term*> bound_;
  std::size_t num_taken_ = 0;  ///< of what is bound
  std::vector<Visit> visits_;
};

}  // namespace lumo::smtlib

#endif
