#ifndef LUMO_SMTLIB_TRAIL_READER_H
#define LUMO_SMTLIB_TRAIL_READER_H

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lumo/elimination/trail.h"
#include "lumo/smtlib/scanner.h"
#include "lumo/smtlib/z3_converter.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Does the work of `read_trail`, once.
class TrailReader
{
 public:
  TrailReader(TermManager& mgr, std::string_view text) : mgr_(mgr), scanner_(mgr, text) {}

  [[nodiscard]] Trail read(std::span<const Term* const> constants);

 private:
  /// A name of the script or of a definition
  struct Name
  {
    const Term* constant = nullptr;     ///< that is declared or stands for a step; else null
    const Term* application = nullptr;  ///< that stands in the step
    bool is_declared = false;
    bool is_defined = false;
    bool is_step = false;
    bool is_free = false;  ///< in one of the steps
  };
  using Names = std::unordered_map<std::string_view, Name>;
  /// What the string of a step says
  struct NamedStep
  {
    Place place;
    const Names::value_type* step;
    std::array<Names::value_type*, kMaxArity> free;
    std::size_t num_free;
  };

  void read_declarations(std::span<const Term* const> constants);
  void note_definitions();
  void note_steps();
  void note_step(Lexer content);
  void note_free(NamedStep& named, Names::value_type& free);
  [[nodiscard]] Names::value_type* read_name(Lexer& lexer, Place place);
  void convert();
  void convert_item(const Scanner::Item& item, Z3Converter& converter, Z3_ast expression);
  void set_step(Name& name, std::string_view text, const Term* application);
  void add_fact(const Term* fact);
  [[nodiscard]] Step make_step(const NamedStep& named) const;
  void set_free(Step& step, const NamedStep& named, Names::value_type& free) const;

  TermManager& mgr_;
  Scanner scanner_;
  Names names_;
  std::vector<NamedStep> steps_;
  Trail trail_;
};

}  // namespace lumo::smtlib

#endif
