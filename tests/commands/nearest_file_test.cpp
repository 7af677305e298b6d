#include "lumo/commands/nearest_file.h"

#include <filesystem>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

struct FileRow
{
  std::string_view typed;
  std::string_view nearest;
};

constexpr FileRow kFileRows[] = {
    {"folder/frist.smt2", "folder/first.smt2"},
    {"folder/first", "folder/first.smt2"},
    {"folder/first.smt", "folder/first.smt2"},
    {"folder/first.txt", ""},
    {"fodler/fist.smt2", "folder/first.smt2"},
    {"./folder/../fodler/fist.smt2", "./folder/../folder/first.smt2"},
    {"first.smt2", ""},         // which is in another folder
    {"folder/inner.smt2", ""},  // a folder
    {"folder/x.smt2", ""},      // all of its stem would be wrong
    {"folder/b.smt", "folder/b.smt2"},
    {"folder/secodn", "folder/second"},
    {"folder/secon.smt2", "folder/second"},
    {"nowhere/first.smt2", ""},
    {"fold/first.smt2", "folder/first.smt2"},
    {"folder/", ""},
    {"", ""},
};

TEST(NearestFile, IsFoundThroughWrongFolders)
{
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder.get_path() / "folder/inner");
  for (const std::string name : {"folder/first.smt2", "folder/second", "folder/b.smt2"})
    folder.write(name, "");
  for (const FileRow& row : kFileRows) {
    SCOPED_TRACE(row.typed);
    const std::string typed = folder.get_file(std::string(row.typed));
    EXPECT_EQ(commands::find_nearest_file(typed),
              row.nearest.empty() ? "" : folder.get_file(std::string(row.nearest)));
  }
}

TEST(NearestFile, OfTwoIsTheFirstInTheAlphabet)
{
  const TemporaryFolder folder;
  for (const std::string name : {"a3.smt2", "a1.smt2", "a2.smt2"})
    folder.write("problem " + name, "");
  EXPECT_EQ(commands::find_nearest_file(folder.get_file("problem a.smt2")),
            folder.get_file("problem a1.smt2"));
}

}  // namespace
}  // namespace lumo::test
