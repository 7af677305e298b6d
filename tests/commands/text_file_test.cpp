#include "lumo/commands/text_file.h"

#include <sstream>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "lumo/terms/exception.h"
#include "tests/support/temporary_folder.h"

namespace lumo::commands {
namespace {

using test::TemporaryFolder;

std::string make_text(std::size_t size)
{
  std::string text;
  for (std::size_t i = 0; text.size() < size; ++i)
    text += "(line " + std::to_string(i) + ")\n";
  text.resize(size);
  return text;
}

TEST(InputTexts, AreWhatAFileHolds)
{
  const TemporaryFolder folder;
  for (const std::size_t size : {0UL, 1UL, 4095UL, 4096UL, 4097UL, 65536UL, 300'000UL}) {
    folder.write("file", make_text(size));
    EXPECT_EQ(InputText::read_file(folder.get_file("file")).get(), make_text(size)) << size;
  }
}

TEST(InputTexts, CanBeReadAfterTheirMemoryWasGivenBack)
{
  const TemporaryFolder folder;
  const std::string content = make_text(300'000);
  folder.write("file", content);
  const InputText text = InputText::read_file(folder.get_file("file"));
  for (const std::size_t size : {0UL, 1UL, 4096UL, 100'000UL, 300'000UL}) {
    text.give_back(size);
    EXPECT_EQ(text.get(), content) << size;
  }
}

TEST(InputTexts, AreWhatAPipeAndAStreamDeliver)
{
  const TemporaryFolder folder;
  const std::string name = folder.get_file("pipe");
  ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
  const std::string content = make_text(300'000);
  std::thread writer([&] { folder.write("pipe", content); });
  const InputText text = InputText::read_file(name);
  writer.join();
  EXPECT_EQ(text.get(), content);
  text.give_back(200'000);
  EXPECT_EQ(text.get(), content);

  std::istringstream in(content);
  EXPECT_EQ(InputText::read_stream(in).get(), content);
}

TEST(InputTexts, AreMoved)
{
  const TemporaryFolder folder;
  folder.write("file", "content");
  InputText text = InputText::read_file(folder.get_file("file"));
  const InputText other = std::move(text);
  EXPECT_EQ(other.get(), "content");
}

TEST(InputTexts, AreRefusedWhereNothingCanBeRead)
{
  const TemporaryFolder folder;
  EXPECT_THROW(static_cast<void>(InputText::read_file(folder.get_file("nothing"))), Exception);
  EXPECT_THROW(static_cast<void>(InputText::read_file(folder.get_file("."))), Exception);
}

}  // namespace
}  // namespace lumo::commands
