#include "lumo/commands/output_file.h"

#include <filesystem>
#include <string>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "tests/support/refusal.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

using commands::OutputFile;

void write(const std::string& file, const std::string& content)
{
  OutputFile output(file);
  output.get_stream() << content;
  output.finish();
  output.commit();
}

TEST(OutputFile, MakesANewFile)
{
  const TemporaryFolder folder;
  write(folder.get_file("new"), "content\n");
  EXPECT_EQ(folder.read("new"), "content\n");
  EXPECT_EQ(folder.count_files(), 1U);
}

TEST(OutputFile, LeavesTheOldContentUntilTheCommit)
{
  const TemporaryFolder folder;
  const std::string file = folder.write("file", "old");
  {
    OutputFile output(file);
    output.get_stream() << "new";
    output.finish();
    EXPECT_EQ(folder.read("file"), "old");
    output.commit();
    EXPECT_EQ(folder.read("file"), "new");
  }
  EXPECT_EQ(folder.count_files(), 1U);
}

TEST(OutputFile, LeavesNothingWithoutACommit)
{
  const TemporaryFolder folder;
  const std::string file = folder.write("file", "old");
  {
    OutputFile output(file);
    output.get_stream() << std::string(100000, 'x');
    OutputFile other(folder.get_file("other"));
    other.get_stream() << "other";
    other.finish();
  }
  EXPECT_EQ(folder.read("file"), "old");
  EXPECT_EQ(folder.count_files(), 1U);
}

TEST(OutputFile, KeepsThePermissionsOfTheOldFile)
{
  using std::filesystem::perms;
  const TemporaryFolder folder;
  const std::string file = folder.write("file", "old");
  const perms old_permissions =
      perms::owner_read | perms::owner_write | perms::group_read | perms::group_write;
  std::filesystem::permissions(file, old_permissions);
  write(file, "new");
  EXPECT_EQ(folder.read("file"), "new");
  EXPECT_EQ(std::filesystem::status(file).permissions(), old_permissions);
}

TEST(OutputFile, WritesBehindSymbolicLinks)
{
  const TemporaryFolder folder;
  const std::string file = folder.write("file", "old");
  std::filesystem::create_symlink("file", folder.get_file("link"));
  std::filesystem::create_symlink(folder.get_file("link"), folder.get_file("second"));
  write(folder.get_file("second"), "new");
  EXPECT_EQ(folder.read("file"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.get_file("link")));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.get_file("second")));

  std::filesystem::create_symlink("target", folder.get_file("open end"));
  write(folder.get_file("open end"), "content");
  EXPECT_EQ(folder.read("target"), "content");
}

TEST(OutputFile, WritesToDevices)
{
  write("/dev/null", "content");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
  EXPECT_EQ(get_refusal([] { write("/dev/full", "content"); }),
            "/dev/full: this cannot be written: No space left on device");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST(OutputFile, LeavesASocketAlone)
{
  const TemporaryFolder folder;
  const std::string socket = folder.get_file("socket");
  ASSERT_EQ(mknod(socket.c_str(), S_IFSOCK | S_IRUSR | S_IWUSR, 0), 0);
  EXPECT_EQ(get_refusal([&] { const OutputFile output(socket); }),
            socket + ": this cannot be written: No such device or address");
  EXPECT_TRUE(std::filesystem::is_socket(socket));
  EXPECT_EQ(folder.count_files(), 1U);
}

TEST(OutputFile, NamesWhatCannotBeWritten)
{
  const TemporaryFolder folder;
  const std::string folder_name = folder.get_path().string();
  EXPECT_EQ(get_refusal([&] { const OutputFile output(folder_name); }),
            folder_name + ": this cannot be written: Is a directory");
  const std::string missing = folder.get_file("missing/file");
  EXPECT_EQ(get_refusal([&] { const OutputFile output(missing); }),
            missing + ": this cannot be written: No such file or directory");
  EXPECT_EQ(get_refusal([&] { const OutputFile output(""); }),
            ": this cannot be written: No such file or directory");
}

}  // namespace
}  // namespace lumo::test
