#include "lumo/terms/term_text.h"

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string_view>
#include <utility>
#include <vector>

#include "lumo/terms/symbol_spelling.h"
#include "lumo/terms/term_table.h"
#include "lumo/terms/term_walk.h"

namespace lumo {

namespace {

/// Prints one term.
class Printer
{
 public:
  /// Throws if the term cannot be printed.
  explicit Printer(const Term* t);
  [[nodiscard]] std::string print() &&;

 private:
  /// Applications that nest deeper are bound by `let`.
  static constexpr std::uint32_t kMaxHeight = 1000;

  struct Node
  {
    std::uint32_t num_uses = 0;
    std::uint32_t name = 0;    ///< the number in the name that is bound to the application, or 0
    std::uint32_t level = 0;   ///< the number of `let` layers that bind what the application needs
    std::uint32_t height = 0;  ///< the number of nested applications down to the next leaf or name
    bool is_bound = false;
  };
  struct Visit
  {
    const Term* application;
    std::size_t next;  ///< argument
  };

  void add_constant(const Term* constant);
  void choose_bindings(const std::vector<const Term*>& terms);
  void bind(const Term* t);
  /// Writes an application, not the name that is bound to it.
  void write_application(const Term* t);
  void write_leaf_or_open(const Term* t);
  void open(const Term* application);
  void write_open();
  /// Writes the bindings; returns the number of layers.
  std::size_t write_lets();

  const Term* root_;
  TermTable<Node> nodes_;
  std::vector<const Term*> bound_;
  std::size_t num_marks_ = 1;  ///< exclamation marks of the bound names
  std::vector<Visit> visits_;
  std::string text_;
};

Printer::Printer(const Term* t) : root_(t)
{
  if (t == nullptr) throw Exception("a null pointer was to be printed, but a term was expected");
  const std::vector<const Term*> terms = collect_terms({&t, 1});
  for (const Term* part : terms) {
    if (part->get_symbol()->get_kind() == Kind::kConstant) add_constant(part);
    for (std::size_t i = 0; i < part->get_num_args(); ++i)
      ++nodes_[part->get_arg(i)->get_id()].num_uses;
  }
  choose_bindings(terms);
}

void Printer::add_constant(const Term* constant)
{
  const std::string_view name = constant->get_symbol()->get_name();
  if (get_symbol_spelling(name) == SymbolSpelling::kNone) {
    throw Exception(
        "a constant's name contains a bar, a backslash or a control character, but SMT-LIB 2 has no "
        "symbol with one: " +
        std::string(name));
  }
  if (!name.starts_with('s')) return;
  num_marks_ = std::max(num_marks_, std::min(name.find_first_not_of('!', 1), name.size()));
}

void Printer::choose_bindings(const std::vector<const Term*>& terms)
{
  for (const Term* t : terms) {
    if (t->get_num_args() == 0) continue;
    Node& node = nodes_[t->get_id()];
    for (std::size_t i = 0; i < t->get_num_args(); ++i) {
      const Term* arg = t->get_arg(i);
      const Node& used = nodes_[arg->get_id()];
      if (used.height == kMaxHeight) bind(arg);
      node.level = std::max(node.level, used.is_bound ? used.level + 1 : used.level);
      if (!used.is_bound) node.height = std::max(node.height, used.height);
    }
    ++node.height;
    if (node.num_uses > 1) bind(t);
  }
  std::stable_sort(bound_.begin(), bound_.end(), [this](const Term* a, const Term* b) {
    return nodes_[a->get_id()].level < nodes_[b->get_id()].level;
  });
}

void Printer::bind(const Term* t)
{
  Node& node = nodes_[t->get_id()];
  if (node.is_bound) return;
  node.is_bound = true;
  bound_.push_back(t);
}

std::string Printer::print() &&
{
  const std::size_t num_layers = write_lets();
  write_leaf_or_open(root_);
  write_open();
  text_.append(num_layers, ')');
  return std::move(text_);
}

std::size_t Printer::write_lets()
{
  std::size_t num_layers = 0;
  std::uint32_t num_names = 0;
  for (const Term* t : bound_) {
    Node& node = nodes_[t->get_id()];
    // The bindings of one layer are independent of each other.
    if (node.level >= num_layers) {
      text_ += num_layers == 0 ? "(let (" : ") (let (";
      ++num_layers;
    } else {
      text_ += ' ';
    }
    const std::uint32_t name = ++num_names;
    text_ += "(s" + std::string(num_marks_, '!') + std::to_string(name) + " ";
    write_application(t);
    text_ += ')';
    node.name = name;
  }
  if (num_layers != 0) text_ += ") ";
  return num_layers;
}

void Printer::write_application(const Term* t)
{
  open(t);
  write_open();
}

/// Writes the rest of the open applications.
void Printer::write_open()
{
  while (!visits_.empty()) {
    Visit& visit = visits_.back();
    if (visit.next == visit.application->get_num_args()) {
      text_ += ')';
      visits_.pop_back();
    } else {
      text_ += ' ';
      write_leaf_or_open(visit.application->get_arg(visit.next++));
    }
  }
}

void Printer::open(const Term* application)
{
  text_ += '(' + application->get_symbol()->get_name();
  visits_.push_back({application, 0});
}

void Printer::write_leaf_or_open(const Term* t)
{
  const std::string& name = t->get_symbol()->get_name();
  if (t->get_num_args() != 0) {
    if (const std::uint32_t number = nodes_[t->get_id()].name; number != 0) {
      text_ += 's' + std::string(num_marks_, '!') + std::to_string(number);
      return;
    }
    open(t);
  } else if (t->get_symbol()->get_kind() == Kind::kConstant &&
             get_symbol_spelling(name) == SymbolSpelling::kQuoted)
  {
    text_ += '|' + name + '|';
  } else {
    text_ += name;
  }
}

}  // namespace

void print_term(std::ostream& out, const Term* t) { out << make_term_text(t); }

std::string make_term_text(const Term* t) { return Printer(t).print(); }

}  // namespace lumo
