#include "tests/smtlib/random_script.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace lumo::test {

namespace {

/// A symbol that may be used where a term of its sort is wanted; width 0 is Bool.
struct Variable
{
  std::string name;
  unsigned long width;
};

struct Definition
{
  std::string name;
  std::vector<unsigned long> parameters;
  unsigned long width;
};

class ScriptGenerator
{
 public:
  explicit ScriptGenerator(Random& random) : random_(random) {}

  std::string make()
  {
    text_ = "(set-logic QF_BV)";
    for (std::size_t i = 0; i < widths_.size(); ++i)
      widths_[i] = random_.pick(std::array<unsigned long, 10>{1, 2, 3, 4, 7, 8, 16, 32, 64, 65});
    add_sort_definitions();
    const std::size_t num_commands = 3 + random_.index(12);
    for (std::size_t i = 0; i < num_commands; ++i) {
      add_blank();
      add_command();
    }
    add_assertion();
    return text_ + "(check-sat)";
  }

 private:
  void add_blank()
  {
    static constexpr std::array<std::string_view, 5> kBlanks = {"\n", " ; (comment |\n", "\t\r\n", "\n\n  ",
                                                                ""};
    text_ += random_.pick(kBlanks);
  }

  void add_sort_definitions()
  {
    text_ += "(define-sort Word () (_ BitVec " + std::to_string(widths_[0]) + "))";
    text_ += "(define-sort Same (A B) B)";
  }

  std::string make_sort(unsigned long width)
  {
    const std::string sort = width == 0 ? "Bool" : "(_ BitVec " + std::to_string(width) + ")";
    if (width == widths_[0] && random_.one_in(2)) return "Word";
    return random_.one_in(8) ? "(Same Bool " + sort + ")" : sort;
  }

  std::string make_name()
  {
    static constexpr std::array<std::string_view, 5> kForms = {"x", "a.b-", "|let ", "|", "v!"};
    std::string name(random_.pick(kForms));
    name += std::to_string(num_names_++);
    if (name.front() == '|') name += "|";
    return name;
  }

  /// The symbol, between bars or not
  std::string write(const std::string& name)
  {
    return name.front() != '|' && random_.one_in(6) ? "|" + name + "|" : name;
  }

  unsigned long draw_width() { return random_.one_in(3) ? 0 : random_.pick(widths_); }

  void add_command()
  {
    switch (random_.index(6)) {
      case 0:
      case 1: {
        const Variable variable{make_name(), draw_width()};
        const std::string sort = make_sort(variable.width);
        text_ += random_.flip() ? "(declare-const " + variable.name + " " + sort + ")"
                                : "(declare-fun " + variable.name + " () " + sort + ")";
        variables_.push_back(variable);
        break;
      }
      case 2: {
        const Variable variable{make_name(), draw_width()};
        text_ += "(define-fun " + variable.name + " () " + make_sort(variable.width) + " " +
                 make_term(variable.width, 3) + ")";
        variables_.push_back(variable);
        break;
      }
      case 3:
        add_function();
        break;
      default:
        add_assertion();
        break;
    }
  }

  void add_function()
  {
    Definition definition{make_name(), {}, draw_width()};
    std::string parameters;
    const std::size_t num_outer = variables_.size();
    const std::size_t num_parameters = 1 + random_.index(3);
    for (std::size_t i = 0; i < num_parameters; ++i) {
      definition.parameters.push_back(draw_width());
      variables_.push_back({make_name(), definition.parameters.back()});
      parameters += "(" + variables_.back().name + " " + make_sort(variables_.back().width) + ")";
    }
    can_name_ = false;
    text_ += "(define-fun " + definition.name + " (" + parameters + ") " + make_sort(definition.width) + " " +
             make_term(definition.width, 3) + ")";
    can_name_ = true;
    variables_.resize(num_outer);
    definitions_.push_back(definition);
  }

  void add_assertion()
  {
    const std::string term = make_term(0, 4);
    text_ += "(assert " + term + ")";
    variables_.insert(variables_.end(), named_.begin(), named_.end());
    named_.clear();
  }

  std::string make_term(unsigned long width, int depth)
  {
    if (depth == 0 || random_.one_in(6)) return make_leaf(width);
    switch (random_.index(12)) {
      case 0:
        return make_let(width, depth);
      case 1:
        return "(! " + make_term(width, depth - 1) +
               (random_.flip() ? " :note |b (|)" : " :note (a (b) \"c)\"))");
      case 2:
        return make_named(width, depth);
      case 3:
      case 4:
        if (std::string call = make_call(width, depth); !call.empty()) return call;
        [[fallthrough]];
      default:
        return width == 0 ? make_bool(depth - 1) : make_vector(width, depth - 1);
    }
  }

  std::string make_leaf(unsigned long width)
  {
    std::vector<std::string> names;
    for (const Variable& variable : variables_) {
      if (variable.width == width) names.push_back(variable.name);
    }
    if (!names.empty() && !random_.one_in(5)) {
      const std::string name = write(random_.pick(names));
      return random_.one_in(10) ? "(as " + name + " " + make_sort(width) + ")" : name;
    }
    if (width == 0) return random_.flip() ? "true" : "false";
    return make_literal(width);
  }

  std::string make_literal(unsigned long width)
  {
    if (random_.one_in(3)) {
      const unsigned long value =
          width < 64 ? random_.pattern(static_cast<unsigned>(width)) : random_.pattern();
      return "(_ bv" + std::to_string(value) + " " + std::to_string(width) + ")";
    }
    const bool is_hexadecimal = width % 4 == 0 && random_.flip();
    std::string literal = is_hexadecimal ? "#x" : "#b";
    for (unsigned long i = 0; i < (is_hexadecimal ? width / 4 : width); ++i)
      literal += is_hexadecimal ? "0123456789abcdefABCDEF"[random_.index(22)] : "01"[random_.index(2)];
    return literal;
  }

  std::string make_let(unsigned long width, int depth)
  {
    std::string bindings;
    std::vector<Variable> bound;
    const std::size_t num_bindings = 1 + random_.index(3);
    for (std::size_t i = 0; i < num_bindings; ++i) {
      // A name may also hide another one.
      Variable variable{make_name(), draw_width()};
      const bool hides = !variables_.empty() && random_.one_in(3);
      if (hides) variable.name = random_.pick(variables_).name;
      const bool is_taken = std::any_of(bound.begin(), bound.end(), [&variable](const Variable& other) {
        return strip(other.name) == strip(variable.name);
      });
      if (is_taken) continue;
      bindings += "(" + write(variable.name) + " " + make_term(variable.width, depth - 1) + ")";
      bound.push_back(variable);
    }
    std::vector<Variable> outer = variables_;
    std::erase_if(variables_, [&bound](const Variable& variable) {
      return std::any_of(bound.begin(), bound.end(), [&variable](const Variable& other) {
        return strip(other.name) == strip(variable.name);
      });
    });
    variables_.insert(variables_.end(), bound.begin(), bound.end());
    const bool could_name = can_name_;
    can_name_ = false;  // A named term must not contain variables.
    std::string let = "(let (" + bindings + ") " + make_term(width, depth - 1) + ")";
    can_name_ = could_name;
    variables_ = std::move(outer);
    return let;
  }

  static std::string_view strip(std::string_view name)
  {
    return name.front() == '|' ? name.substr(1, name.size() - 2) : name;
  }

  std::string make_named(unsigned long width, int depth)
  {
    if (!can_name_) return make_leaf(width);
    const std::string term = make_term(width, depth - 1);
    const std::string name = make_name();
    named_.push_back({name, width});
    return "(! " + term + " :named " + name + ")";
  }

  std::string make_call(unsigned long width, int depth)
  {
    std::vector<const Definition*> fitting;
    for (const Definition& definition : definitions_) {
      if (definition.width == width) fitting.push_back(&definition);
    }
    if (fitting.empty()) return {};
    const Definition& definition = *random_.pick(fitting);
    std::string call = "(" + write(definition.name);
    for (const unsigned long parameter : definition.parameters)
      call += " " + make_term(parameter, depth - 1);
    return call + ")";
  }

  std::string apply(std::string_view op, unsigned long width, std::size_t num_args, int depth)
  {
    std::string text = "(" + std::string(op);
    for (std::size_t i = 0; i < num_args; ++i)
      text += (random_.one_in(10) ? "\n  " : " ") + make_term(width, depth);
    return text + ")";
  }

  std::string make_bool(int depth)
  {
    static constexpr std::array<std::string_view, 5> kConnectives = {"and", "or", "xor", "=>", "="};
    static constexpr std::array<std::string_view, 8> kAtoms = {"bvult", "bvule", "bvugt", "bvuge",
                                                               "bvslt", "bvsle", "bvsgt", "bvsge"};
    const unsigned long width = random_.pick(widths_);
    switch (random_.index(6)) {
      case 0:
        return apply("not", 0, 1, depth);
      case 1:
        return apply(random_.pick(kConnectives), 0, 2 + random_.index(3), depth);
      case 2:
        return apply(random_.flip() ? "=" : "distinct", width, 2 + random_.index(3), depth);
      case 3:
        return apply("distinct", 0, 2, depth);
      case 4:
        return "(ite " + make_term(0, depth) + " " + make_term(0, depth) + " " + make_term(0, depth) + ")";
      default:
        return apply(random_.pick(kAtoms), width, 2, depth);
    }
  }

  std::string make_vector(unsigned long width, int depth)
  {
    static constexpr std::array<std::string_view, 6> kChains = {"bvand", "bvor",  "bvxor",
                                                                "bvadd", "bvmul", "bvxnor"};
    static constexpr std::array<std::string_view, 12> kBinary = {"bvsub",  "bvudiv", "bvurem", "bvsdiv",
                                                                 "bvsrem", "bvsmod", "bvshl",  "bvlshr",
                                                                 "bvashr", "bvnand", "bvnor",  "bvxnor"};
    switch (random_.index(9)) {
      case 0:
        return apply(random_.flip() ? "bvnot" : "bvneg", width, 1, depth);
      case 1:
      case 2:
        return apply(random_.pick(kChains), width, 2 + random_.index(3), depth);
      case 3:
        return "(ite " + make_term(0, depth) + " " + make_term(width, depth) + " " + make_term(width, depth) +
               ")";
      case 4:
        return make_indexed(width, depth);
      case 5:
        if (width == 1) return apply("bvcomp", random_.pick(widths_), 2, depth);
        return make_concatenation(width, depth);
      default:
        return apply(random_.pick(kBinary), width, 2, depth);
    }
  }

  std::string make_concatenation(unsigned long width, int depth)
  {
    const unsigned long high = 1 + random_.index(width - 1);
    std::string text = "(concat " + make_term(high, depth);
    unsigned long low = width - high;
    if (low > 1 && random_.flip()) {
      text += " " + make_term(1, depth);
      --low;
    }
    return text + " " + make_term(low, depth) + ")";
  }

  std::string make_indexed(unsigned long width, int depth)
  {
    const auto index = [](unsigned long number) { return std::to_string(number); };
    switch (random_.index(5)) {
      case 0: {
        const unsigned long lsb = random_.index(5);
        const unsigned long operand = lsb + width + random_.index(5);
        return "((_ extract " + index(lsb + width - 1) + " " + index(lsb) + ") " + make_term(operand, depth) +
               ")";
      }
      case 1:
        return "((_ rotate_left " + index(random_.index(200)) + ") " + make_term(width, depth) + ")";
      case 2:
        return "((_ |rotate_right| " + index(random_.index(200)) + ") " + make_term(width, depth) + ")";
      case 3:
        if (width % 2 == 0) return "((_ repeat 2) " + make_term(width / 2, depth) + ")";
        return "((_ repeat 1) " + make_term(width, depth) + ")";
      default: {
        const unsigned long k = random_.index(width);
        return std::string("((_ ") + (random_.flip() ? "zero" : "sign") + "_extend " + index(k) + ") " +
               make_term(width - k, depth) + ")";
      }
    }
  }

  Random& random_;
  std::string text_;
  std::array<unsigned long, 3> widths_{};
  std::vector<Variable> variables_;
  std::vector<Variable> named_;  ///< in the current assertion
  std::vector<Definition> definitions_;
  std::size_t num_names_ = 0;
  bool can_name_ = true;
};

}  // namespace

std::string make_random_script(Random& random) { return ScriptGenerator(random).make(); }

}  // namespace lumo::test
