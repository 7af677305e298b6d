#ifndef LUMO_SMTLIB_SCRIPT_READER_H
#define LUMO_SMTLIB_SCRIPT_READER_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/smtlib/input_error.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

class ForeignTerms;

struct Assertion
{
  const Term* term;
  Place place;  ///< of the command
};

/// The declarations and assertions of a text, in its order.
struct Script
{
  std::vector<const Term*> constants;  ///< all that are declared, whether used or not
  std::vector<Assertion> assertions;
  std::vector<std::string>
      skipped;  ///< the commands that ask for output, each once: `get-value`, `echo`, ...
  /// What the text contains that the term layer does not have; null if there is nothing of it.
  std::shared_ptr<const ForeignTerms> foreign;

  /// The terms of the assertions in their order.
  [[nodiscard]] std::vector<const Term*> get_asserted_terms() const;
};

/// A text that makes more than one query, or has more levels than one around it; `read_query` reads it.
class SeveralQueries : public InputError
{
 public:
  using InputError::InputError;
};

/// Whether a text may contain terms and sorts of other theories than Booleans and bit-vectors.
enum class ForeignText : std::uint8_t
{
  kRefused,
  kTaken,  ///< constants represent such terms; who uses the script must keep them, and the arguments of these terms
};

/// Reads SMT-LIB 2 text with at most one query over Booleans and bit-vectors into terms of a manager. The manager
/// should be new: it must not have the names of the text's constants with other sorts.
///
/// One level may be pushed before the query and popped after it. Operators that the term layer does not have become
/// applications of those that it has; an application to more arguments than two becomes nested ones; definitions,
/// lets and named terms are replaced by what they stand for. Throws an InputError for everything else, and a
/// SeveralQueries for a second query and for more levels. Time and memory are linear in the text and the terms that are
/// made from it, and nesting may have any depth. The text is only needed during the call.
///
/// `pass`, if there is one, is called from time to time with the number of characters that were read. They are read
/// again only to find the place of an error.
[[nodiscard]] Script read_script(TermManager& mgr, std::string_view text,
                                 const std::function<void(std::size_t)>& pass = {},
                                 ForeignText foreign = ForeignText::kRefused);

}  // namespace lumo::smtlib

#endif
