// The guide and the README show sessions: lines that start with a dollar sign and what they print. This runs them in
// a folder with the examples and compares.

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/process.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

struct Exchange
{
  std::string command;
  std::string output;
};

/// The exchanges of all blocks that are marked as `console`, in their order.
std::vector<Exchange> read_sessions(const std::filesystem::path& page)
{
  std::vector<Exchange> exchanges;
  std::ifstream file(page);
  bool is_inside = false;
  for (std::string line; std::getline(file, line);) {
    if (line == "```console") {
      is_inside = true;
    } else if (line == "```") {
      is_inside = false;
    } else if (is_inside && line.starts_with("$ ")) {
      exchanges.push_back({line.substr(2), ""});
    } else if (is_inside && !exchanges.empty()) {
      exchanges.back().output += line + "\n";
    }
  }
  return exchanges;
}

void expect_sessions(const std::filesystem::path& page)
{
  const TemporaryFolder folder;
  std::filesystem::create_directory_symlink(std::filesystem::path(LUMO_SOURCE_DIR) / "examples",
                                            folder.get_path() / "examples");
  // The README calls the program by the path at which the demo builds it.
  std::filesystem::create_directories(folder.get_path() / "build/demo/cli");
  std::filesystem::create_symlink(LUMO_PROGRAM, folder.get_path() / "build/demo/cli/lumo");

  const std::vector<Exchange> exchanges = read_sessions(page);
  EXPECT_FALSE(exchanges.empty());
  for (const Exchange& exchange : exchanges) {
    SCOPED_TRACE(exchange.command);
    const std::string script = "PATH=\"$PWD/build/demo/cli:$PATH\"\n{ " + exchange.command + "\n} 2>&1";
    EXPECT_EQ(run_program("/bin/sh", {"-c", script}, folder.get_path()).out, exchange.output);
  }
}

#ifdef Z3_PROGRAM
TEST(Guide, ShowsWhatTheProgramPrints)
{
  expect_sessions(std::filesystem::path(LUMO_SOURCE_DIR) / "docs/program.md");
}
#endif

TEST(Guide, AndTheReadmeShowWhatTheProgramPrints)
{
  expect_sessions(std::filesystem::path(LUMO_SOURCE_DIR) / "README.md");
}

}  // namespace
}  // namespace lumo::test
