// What a reader of conversations knows from one command to the next.

#include "lumo/smtlib/conversation_reader.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::smtlib {
namespace {

/// A conversation that is read command by command.
class Conversation
{
 public:
  /// Reads a command and returns its name, or the message on what is wrong with it.
  std::string read(std::string_view text)
  {
    text_ = text;
    try {
      command_ = reader_.read({text_, Place{place_++, 1}});
      return std::string(command_.name);
    } catch (const InputError& e) {
      return make_located_message("f", e);
    }
  }
  /// The sort of a constant of the text, by asking for its value.
  std::string find_sort(const std::string& name)
  {
    std::string read_name = read("(get-value (" + name + "))");
    if (read_name != "get-value") return read_name;
    return reader_.get_terms().front().term->get_symbol()->get_output_type()->to_string();
  }
  [[nodiscard]] std::string list_constants() const
  {
    std::string names;
    for (const Term* constant : reader_.list_constants())
      names += std::string(reader_.get_text_name(constant)) + " ";
    return names;
  }
  [[nodiscard]] std::string list_named() const
  {
    std::string names;
    for (const NamedTerm& named : reader_.get_named_terms())
      names += std::string(named.name) + " ";
    return names;
  }
  void expect_all_read(const std::vector<std::string_view>& texts)
  {
    for (const std::string_view text : texts)
      EXPECT_EQ(text.substr(1, read(text).size()), command_.name) << text;
  }

  TermManager mgr_;
  ConversationReader reader_{mgr_};
  Command command_;

 private:
  std::string text_;
  std::size_t place_ = 1;  ///< a line for each command
};

TEST(ConversationReader, KeepsSymbolsBetweenCommands)
{
  Conversation talk;
  talk.expect_all_read({"(declare-const x (_ BitVec 8))", "(define-fun f ((a (_ BitVec 8))) Bool (= a x))",
                        "(define-sort B () Bool)", "(declare-fun b () B)", "(assert (=> b (f #x01)))"});
  EXPECT_EQ(talk.list_constants(), "x b ");
  EXPECT_EQ(talk.find_sort("(f x)"), "Bool");
}

TEST(ConversationReader, GoesOnAfterAnErrorAsIfTheCommandHadNotBeen)
{
  Conversation talk;
  talk.expect_all_read({"(declare-const x Bool)", "(push 1)"});
  EXPECT_EQ(talk.read("(assert (and (! x :named a) y))"), "f:3:29: the symbol y is not declared");
  EXPECT_EQ(talk.read("(assert a)"), "f:4:9: the symbol a is not declared");
  EXPECT_EQ(talk.read("(define-sort T () Bool"),
            "f:5:1: a parenthesis opens here, but the text ends before it is closed");
  EXPECT_EQ(talk.read("(declare-const t T)"),
            "f:6:18: the symbol T was found, but the sort Bool or (_ BitVec w) was expected");
  EXPECT_EQ(talk.read("(pop 2)"), "f:7:1: 2 levels are popped, but 1 can be");
  EXPECT_EQ(talk.read("(declare-const x Bool)"),
            "f:8:16: the symbol x is declared here, but it has a meaning already");
  EXPECT_EQ(talk.read("(get-value ((let ((x #b1)) (bvadd x y))))"), "f:9:37: the symbol y is not declared");
  EXPECT_EQ(talk.find_sort("x"), "Bool");
  EXPECT_EQ(talk.list_named(), "");
  EXPECT_EQ(talk.reader_.get_num_levels(), 1U);
}

TEST(ConversationReader, TakesDeclarationsBackWithTheirLevels)
{
  Conversation talk;
  talk.expect_all_read({"(declare-const x Bool)", "(push 2)", "(declare-const y (_ BitVec 4))",
                        "(define-const z Bool x)", "(assert (! z :named n))"});
  EXPECT_EQ(talk.reader_.get_label(), "n");
  EXPECT_EQ(talk.list_constants(), "x y ");
  EXPECT_EQ(talk.list_named(), "n ");
  talk.expect_all_read({"(pop 1)"});
  EXPECT_EQ(talk.list_constants(), "x ");
  EXPECT_EQ(talk.list_named(), "");
  EXPECT_EQ(talk.find_sort("z"), "f:7:13: the symbol z is not declared");
}

TEST(ConversationReader, GivesANameAnotherSortAfterAPop)
{
  Conversation talk;
  std::vector<const Term*> constants;
  for (const char* sort : {"Bool", "(_ BitVec 4)", "Bool", "(_ BitVec 4)", "(_ BitVec 5)"}) {
    talk.expect_all_read({"(push 1)"});
    EXPECT_EQ(talk.read("(declare-const x " + std::string(sort) + ")"), "declare-const");
    EXPECT_EQ(talk.find_sort("x"), sort);
    EXPECT_EQ(talk.list_constants(), "x ");
    constants.push_back(talk.reader_.list_constants().front());
    talk.expect_all_read({"(pop 1)"});
  }
  EXPECT_EQ(constants[0], constants[2]);
  EXPECT_EQ(constants[1], constants[3]);
  EXPECT_NE(constants[1], constants[4]);
}

TEST(ConversationReader, KeepsReservedNamesFree)
{
  Conversation talk;
  const Term* fresh = talk.mgr_.make_fresh_constant("lumo!u", talk.mgr_.make_bool_type());
  ASSERT_EQ(fresh->get_symbol()->get_name(), "lumo!u!0");
  talk.expect_all_read({"(declare-const lumo!u!0 Bool)", "(declare-const |lumo!u!1| (_ BitVec 2))"});
  EXPECT_EQ(talk.list_constants(), "lumo!u!0 lumo!u!1 ");
  EXPECT_NE(talk.reader_.list_constants()[0], fresh);
  const Term* next = talk.mgr_.make_fresh_constant("lumo!u", talk.mgr_.make_bool_type());
  EXPECT_EQ(next->get_symbol()->get_name(), "lumo!u!1");
  EXPECT_NE(talk.reader_.list_constants()[1], next);
}

TEST(ConversationReader, KeepsDeclarationsIfToldTo)
{
  Conversation talk;
  talk.reader_.keep_declarations(true);
  talk.expect_all_read(
      {"(push 1)", "(declare-const x Bool)", "(pop 1)", "(push 1)", "(declare-const y Bool)"});
  EXPECT_EQ(talk.list_constants(), "x y ");
  talk.expect_all_read({"(reset-assertions)"});
  EXPECT_EQ(talk.list_constants(), "x y ");
  EXPECT_EQ(talk.reader_.get_num_levels(), 0U);
  EXPECT_TRUE(talk.reader_.has_begun());
  talk.expect_all_read({"(reset)"});
  EXPECT_EQ(talk.list_constants(), "");
  EXPECT_FALSE(talk.reader_.has_begun());
}

TEST(ConversationReader, ForgetsEverythingWithTheAssertions)
{
  Conversation talk;
  talk.expect_all_read(
      {"(declare-const x Bool)", "(push 3)", "(assert (! x :named n))", "(reset-assertions)"});
  EXPECT_EQ(talk.list_constants(), "");
  EXPECT_EQ(talk.list_named(), "");
  EXPECT_FALSE(talk.reader_.has_begun());
}

struct LabelRow
{
  std::string_view text;
  std::string_view label;
};

TEST(ConversationReader, FindsTheNameOfAWholeAssertion)
{
  const LabelRow rows[] = {
      {"(assert x)", ""},
      {"(assert (! x :named a))", "a"},
      {"( assert ( ! x :foo bar :named |a b| :baz ))", "a b"},
      {"(assert (and (! x :named a) x))", ""},
      {"(assert (! (and (! x :named a) x) :foo 1))", ""},
      {"(assert (! (and (! x :named a) x) :named b))", "b"},
      {"(assert (! (not (! x :named a)) :named b :named c))", "c"},
  };
  for (const LabelRow& row : rows) {
    Conversation talk;
    talk.expect_all_read({"(declare-const x Bool)"});
    EXPECT_EQ(talk.read(row.text), "assert") << row.text;
    EXPECT_EQ(talk.reader_.get_label().value_or(""), row.label) << row.text;
  }
}

TEST(ConversationReader, GivesTermsAsTheyAreWritten)
{
  Conversation talk;
  talk.expect_all_read({"(declare-const x (_ BitVec 8))", "(declare-const b Bool)"});
  EXPECT_EQ(talk.read("(get-value ( x  (bvadd x ; one\n #x01) b))"), "get-value");
  ASSERT_EQ(talk.reader_.get_terms().size(), 3U);
  EXPECT_EQ(talk.reader_.get_terms()[0].text, "x");
  EXPECT_EQ(talk.reader_.get_terms()[1].text, "(bvadd x ; one\n #x01)");
  EXPECT_EQ(talk.reader_.get_terms()[2].text, "b");
  EXPECT_EQ(talk.read("(check-sat-assuming (b (not b) ))"), "check-sat-assuming");
  ASSERT_EQ(talk.reader_.get_terms().size(), 2U);
  EXPECT_EQ(talk.reader_.get_terms()[1].text, "(not b)");
  EXPECT_EQ(talk.read("(check-sat-assuming (b x))"),
            "f:5:24: the assumption has sort (_ BitVec 8), but sort Bool was expected");
  EXPECT_EQ(talk.read("(get-value x)"), "f:6:12: the symbol x was found, but a list of terms was expected");
  EXPECT_EQ(talk.read("(get-value (x"),
            "f:7:1: a parenthesis opens here, but the text ends before it is closed");
  EXPECT_EQ(talk.read("(check-sat)"), "check-sat");
  EXPECT_TRUE(talk.reader_.get_terms().empty());
}

TEST(ConversationReader, ReadsTheOtherCommands)
{
  Conversation talk;
  EXPECT_EQ(talk.read(R"((echo "a ""b"""))"), "echo");
  EXPECT_EQ(talk.command_.symbol.text, R"(a ""b"")");
  EXPECT_EQ(talk.read("(get-info :name)"), "get-info");
  EXPECT_EQ(talk.command_.keyword.text, ":name");
  EXPECT_EQ(talk.read("(get-option x)"), "f:3:13: the symbol x was found, but a keyword was expected");
  EXPECT_EQ(talk.read("(set-option :a  (b c) )"), "set-option");
  EXPECT_EQ(talk.command_.content, "  (b c) ");
  EXPECT_EQ(talk.read("(frobnicate (a) b)"), "frobnicate");
  EXPECT_EQ(talk.command_.kind, CommandKind::kOther);
  EXPECT_EQ(talk.read("word"), "f:6:1: the symbol word was found, but a command in parentheses was expected");
}

}  // namespace
}  // namespace lumo::smtlib
