#include "lumo/terms/exception.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::test {

namespace {

class DerivedError : public Exception
{
 public:
  explicit DerivedError(const std::string& msg) : Exception(msg) {}
};

std::vector<std::string> seen;

void record(const Exception& e) { seen.emplace_back(e.what()); }

void refuse(const Exception& e) { throw std::runtime_error("refused: " + std::string(e.what())); }

using Texts = std::vector<std::string>;

/// Each test starts with nothing seen and ends without an observer.
class ExceptionObserver : public testing::Test
{
 protected:
  ExceptionObserver() { seen.clear(); }
  ~ExceptionObserver() override { Exception::set_observer(nullptr); }
};

}  // namespace

// -----------------------------------------------------------------------------------------------------------
// texts

TEST(Exception, IsAStandardException)
{
  static_assert(std::is_base_of_v<std::exception, Exception>);
  static_assert(std::has_virtual_destructor_v<Exception>);
  const Exception e("a text");
  const std::exception& base = e;
  EXPECT_STREQ(base.what(), "a text");
}

TEST(Exception, HasNoTextByDefault) { EXPECT_STREQ(Exception().what(), ""); }

TEST(Exception, GivesTheTextBackAsItIs)
{
  for (const std::string text : {"", "a text", "Term is not free!\n", "\n", "100% {} \\n \"quoted\"", "é"})
    EXPECT_EQ(Exception(text).what(), text);
  const std::string long_text(100000, 'x');
  EXPECT_EQ(Exception(long_text).what(), long_text);
}

TEST(Exception, AppendsPiecesOfAnyKind)
{
  Exception e("width ");
  Exception& result = e << 8UL << ", sort " << std::string("Bool") << ' ' << -1 << '\n';
  EXPECT_EQ(&result, &e);
  EXPECT_STREQ(e.what(), "width 8, sort Bool -1\n");
}

TEST(Exception, AppendsBehindATextThatWasRead)
{
  Exception e;
  e << "one";
  EXPECT_STREQ(e.what(), "one");
  e << " two";
  EXPECT_STREQ(e.what(), "one two");
  EXPECT_STREQ(e.what(), "one two");
}

TEST(Exception, CopyHasTheWholeText)
{
  Exception e("expected constant, but ");
  e << "bvadd"
    << " found instead";
  const Exception copy(e);  // NOLINT(performance-unnecessary-copy-initialization): the copy is the subject
  EXPECT_STREQ(copy.what(), "expected constant, but bvadd found instead");
}

TEST(Exception, CopyHasAStreamOfItsOwn)
{
  auto e = std::make_unique<Exception>("base");
  Exception copy(*e);
  copy << ", copy";
  *e << ", original";
  EXPECT_STREQ(e->what(), "base, original");
  EXPECT_STREQ(copy.what(), "base, copy");

  Exception copy_of_copy(copy);
  e.reset();
  copy_of_copy << " again";
  EXPECT_STREQ(copy_of_copy.what(), "base, copy again");
  EXPECT_STREQ(copy.what(), "base, copy");
}

TEST(Exception, IsThrownByValueWithAppendedText)
{
  const std::string name = "x";
  try {
    throw Exception(Exception("found ") << name);
  } catch (const std::exception& e) {
    EXPECT_STREQ(e.what(), "found x");
  }
}

TEST(Exception, CannotBeAssigned)
{
  static_assert(!std::is_copy_assignable_v<Exception>);
  static_assert(!std::is_convertible_v<std::string, Exception>);
}

// -----------------------------------------------------------------------------------------------------------
// the observer

TEST_F(ExceptionObserver, IsNoneByDefault)
{
  EXPECT_EQ(Exception::set_observer(nullptr), nullptr);
  EXPECT_NO_THROW(Exception("no observer").dump_msg_and_raise_assertion());
}

TEST_F(ExceptionObserver, IsHandedBackByItsSuccessor)
{
  EXPECT_EQ(Exception::set_observer(record), nullptr);
  EXPECT_EQ(Exception::set_observer(refuse), &record);
  EXPECT_EQ(Exception::set_observer(nullptr), &refuse);
  EXPECT_EQ(Exception::set_observer(nullptr), nullptr);
}

TEST_F(ExceptionObserver, SeesADefaultConstructionOnce)
{
  Exception::set_observer(record);
  const Exception e;
  EXPECT_EQ(seen, Texts{""});
}

TEST_F(ExceptionObserver, SeesTheTextInPlace)
{
  Exception::set_observer(record);
  const Exception e("Term is not free!\n");
  EXPECT_EQ(seen, Texts{"Term is not free!\n"});
}

TEST_F(ExceptionObserver, SeesACopyOnceWithTheTextSoFar)
{
  Exception e("one");
  e << " two";
  Exception::set_observer(record);
  const Exception copy(e);  // NOLINT(performance-unnecessary-copy-initialization): the copy is the subject
  EXPECT_EQ(seen, Texts{"one two"});
}

TEST_F(ExceptionObserver, DoesNotSeeAppendingAndReading)
{
  Exception e("one");
  Exception::set_observer(record);
  e << " two" << 3;
  EXPECT_STREQ(e.what(), "one two3");
  EXPECT_EQ(seen, Texts{});
}

TEST_F(ExceptionObserver, SeesAThrowByValueOfADerivedClassOnce)
{
  Exception::set_observer(record);
  EXPECT_THROW(throw DerivedError("found it\n"), DerivedError);
  EXPECT_EQ(seen, Texts{"found it\n"});
}

TEST_F(ExceptionObserver, SeesACopyOfACaughtExceptionAsOneMore)
{
  Exception::set_observer(record);
  try {
    throw DerivedError("text");
  } catch (const DerivedError& e) {
    EXPECT_EQ(seen, Texts{"text"});
    DerivedError copy(e);
    copy << " of a copy";
    EXPECT_STREQ(copy.what(), "text of a copy");
  }
  EXPECT_EQ(seen, (Texts{"text", "text"}));
}

TEST_F(ExceptionObserver, SeesEachStepOfAThrowThatAppends)
{
  Exception::set_observer(record);
  EXPECT_THROW(throw Exception(Exception("found ") << "x"), Exception);
  EXPECT_EQ(seen, (Texts{"found ", "found x"}));
}

TEST_F(ExceptionObserver, IsCalledByTheHook)
{
  const Exception e("by hand");
  Exception::set_observer(record);
  e.dump_msg_and_raise_assertion();
  e.dump_msg_and_raise_assertion();
  EXPECT_EQ(seen, (Texts{"by hand", "by hand"}));
}

TEST_F(ExceptionObserver, SeesTheBaseOnlyWhileADerivedClassIsConstructed)
{
  static bool is_base_only;
  Exception::set_observer([](const Exception& e) { is_base_only = typeid(e) == typeid(Exception); });
  is_base_only = false;
  const DerivedError e("derived");
  EXPECT_TRUE(is_base_only);
}

TEST_F(ExceptionObserver, MayConstructAndCopyExceptionsWithoutBeingCalledForThem)
{
  static int num_calls;
  num_calls = 0;
  Exception::set_observer([](const Exception& e) {
    ++num_calls;
    const Exception copy(e);  // NOLINT(performance-unnecessary-copy-initialization): it is what is tried
    try {
      throw DerivedError("within the observer");
    } catch (const Exception& inner) {
      seen.emplace_back(std::string(copy.what()) + ", " + inner.what());
    }
  });
  const Exception first("first");
  const Exception second("second");
  EXPECT_EQ(num_calls, 2);
  EXPECT_EQ(seen, (Texts{"first, within the observer", "second, within the observer"}));
}

TEST_F(ExceptionObserver, IsCalledAgainAfterItHasThrown)
{
  Exception::set_observer(refuse);
  for (int i = 0; i < 2; ++i)
    EXPECT_THROW(throw Exception("a"), std::runtime_error);
}

TEST_F(ExceptionObserver, MayHaveAContextOfItsOwnNextToOneWithout)
{
  const auto append = [](const Exception& e, void* context) {
    static_cast<Texts*>(context)->push_back("with context: " + std::string(e.what()));
  };
  const auto no_observer = std::pair<Exception::ContextObserver, void*>{nullptr, nullptr};
  Texts texts;
  Texts other_texts;
  EXPECT_EQ(Exception::set_observer(append, &texts), no_observer);
  Exception::set_observer([](const Exception& e) { seen.emplace_back(e.what()); });
  const Exception first("first");
  EXPECT_EQ(Exception::set_observer(append, &other_texts).second, &texts);
  const Exception second("second");
  Exception::set_observer(nullptr);
  const Exception third("third");
  EXPECT_EQ(Exception::set_observer(nullptr, nullptr).second, &other_texts);
  const Exception fourth("fourth");
  EXPECT_EQ(texts, (Texts{"with context: first"}));
  EXPECT_EQ(other_texts, (Texts{"with context: second", "with context: third"}));
  EXPECT_EQ(seen, (Texts{"first", "second"}));
}

TEST_F(ExceptionObserver, WithAContextMayConstructExceptions)
{
  static int num_calls;
  num_calls = 0;
  Exception::set_observer(
      [](const Exception& e, void* /*context*/) {
        ++num_calls;
        const Exception copy(e);  // NOLINT(performance-unnecessary-copy-initialization): likewise
      },
      nullptr);
  const Exception e("text");
  Exception::set_observer(nullptr, nullptr);
  EXPECT_EQ(num_calls, 1);
}

TEST_F(ExceptionObserver, MayThrowInPlaceOfTheException)
{
  Exception::set_observer(refuse);
  try {
    throw DerivedError("original");
  } catch (const Exception&) {
    ADD_FAILURE() << "the exception was built although its observer threw";
  } catch (const std::runtime_error& e) {
    EXPECT_STREQ(e.what(), "refused: original");
  }
  EXPECT_THROW(throw Exception(), std::runtime_error);
  Exception::set_observer(nullptr);
  EXPECT_STREQ(Exception("works again").what(), "works again");
}

}  // namespace lumo::test
