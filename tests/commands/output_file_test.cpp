#include "lumo/commands/output_file.h"

#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/refusal.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

using commands::find_output_target;
using commands::OutputFile;

void write(const std::string& file, const std::string& content)
{
  OutputFile output(file, find_output_target(file));
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
    OutputFile output(file, find_output_target(file));
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
    OutputFile output(file, find_output_target(file));
    output.get_stream() << std::string(100000, 'x');
    OutputFile other(folder.get_file("other"), find_output_target(folder.get_file("other")));
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

/// A file descriptor that the destructor closes
class Descriptor
{
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { ::close(number_); }

  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] std::string get_name() const { return "/dev/fd/" + std::to_string(number_); }

 private:
  int number_;
};

TEST(OutputFile, AppendsToWhatIsOpen)
{
  const TemporaryFolder folder;
  const std::string file = folder.write("file", "old content");
  for (const std::string start : {"/dev/fd/", "/proc/self/fd/", "/dev/fd/../fd/"}) {
    SCOPED_TRACE(start);
    const Descriptor descriptor(open(file.c_str(), O_WRONLY | O_TRUNC));
    ASSERT_EQ(::write(descriptor.get(), "a", 1), 1);
    write(start + std::to_string(descriptor.get()), "b");
    ASSERT_EQ(::write(descriptor.get(), "c", 1), 1);
    EXPECT_EQ(folder.read("file"), "abc");
    EXPECT_EQ(folder.count_files(), 1U);
  }
}

TEST(OutputFile, WritesToOpenPipes)
{
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const Descriptor reader(ends[0]);
  {
    const Descriptor writer(ends[1]);
    write(writer.get_name(), "content");
  }
  std::string content(100, ' ');
  const ssize_t size = ::read(reader.get(), content.data(), content.size());
  ASSERT_GE(size, 0);
  EXPECT_EQ(content.substr(0, static_cast<std::size_t>(size)), "content");
  EXPECT_EQ(::read(reader.get(), content.data(), content.size()), 0) << "the writing end is still open";
}

TEST(OutputFile, WritesToWhatAnotherProcessHasOpen)
{
  const TemporaryFolder folder;
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    char c = 0;
    _exit(::close(ends[1]) == 0 && ::read(ends[0], &c, 1) == 1 && c == 'x' ? 0 : 1);
  }
  write("/proc/" + std::to_string(child) + "/fd/" + std::to_string(ends[0]), "x");
  ::close(ends[0]);
  ::close(ends[1]);
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

TEST(OutputFile, NamesADescriptorThatCannotBeWritten)
{
  const TemporaryFolder folder;
  const Descriptor reader(open(folder.write("file", "old").c_str(), O_RDONLY));
  EXPECT_EQ(get_refusal([&] { write(reader.get_name(), "content"); }),
            reader.get_name() + ": this cannot be written: Bad file descriptor");
  EXPECT_EQ(get_refusal([&] { write("/dev/fd/987654", "content"); }),
            "/dev/fd/987654: this cannot be written: Bad file descriptor");
  EXPECT_EQ(folder.read("file"), "old");
}

/// For its lifetime, the process has the permissions of the user `nobody`, if it had those of root.
class PermissionsOfNobody
{
 public:
  PermissionsOfNobody() : was_root_(geteuid() == 0)
  {
    constexpr uid_t kNobody = 65534;
    if (was_root_ && seteuid(kNobody) != 0) ADD_FAILURE() << "the user cannot be changed";
  }
  PermissionsOfNobody(const PermissionsOfNobody&) = delete;
  PermissionsOfNobody& operator=(const PermissionsOfNobody&) = delete;
  ~PermissionsOfNobody()
  {
    if (was_root_ && seteuid(0) != 0) ADD_FAILURE() << "the user cannot be changed back";
  }

 private:
  bool was_root_;
};

TEST(OutputFile, NamesTheFolderThatTakesNoFile)
{
  using std::filesystem::perms;
  const TemporaryFolder folder;
  const std::string locked = folder.get_file("locked");
  std::filesystem::create_directory(locked);
  folder.write("locked/file", "old");
  std::filesystem::permissions(folder.get_path(), perms::all);
  std::filesystem::permissions(locked, perms{0555});
  const std::string real_name = std::filesystem::canonical(locked).string();
  for (const std::string name : {"new", "file"}) {
    const PermissionsOfNobody permissions;
    EXPECT_EQ(get_refusal([&] { write(locked + "/" + name, "content"); }),
              locked + "/" + name + ": this cannot be written: no file can be made in the folder " +
                  real_name + ": Permission denied");
  }
  EXPECT_EQ(folder.read("locked/file"), "old");
  std::filesystem::permissions(locked, perms::all);
}

TEST(OutputFile, LeavesASocketAlone)
{
  const TemporaryFolder folder;
  const std::string socket = folder.get_file("socket");
  ASSERT_EQ(mknod(socket.c_str(), S_IFSOCK | S_IRUSR | S_IWUSR, 0), 0);
  EXPECT_EQ(get_refusal([&] { write(socket, "content"); }),
            socket + ": this cannot be written: No such device or address");
  EXPECT_TRUE(std::filesystem::is_socket(socket));
  EXPECT_EQ(folder.count_files(), 1U);
}

TEST(OutputFile, NamesWhatCannotBeWritten)
{
  const TemporaryFolder folder;
  const std::string folder_name = folder.get_path().string();
  EXPECT_EQ(get_refusal([&] { write(folder_name, "content"); }),
            folder_name + ": this cannot be written: Is a directory");
  const std::string missing = folder.get_file("missing/file");
  EXPECT_EQ(get_refusal([&] { write(missing, "content"); }),
            missing + ": this cannot be written: No such file or directory");
  EXPECT_EQ(get_refusal([&] { write("", "content"); }),
            ": this cannot be written: No such file or directory");
  std::filesystem::create_symlink("circle", folder.get_file("circle"));
  EXPECT_EQ(get_refusal([&] { write(folder.get_file("circle"), ""); }),
            folder.get_file("circle") + ": this cannot be written: Too many levels of symbolic links");
}

}  // namespace
}  // namespace lumo::test
