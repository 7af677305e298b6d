#include "tests/support/temporary_folder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace lumo::test {

TemporaryFolder::TemporaryFolder()
{
  std::string name = (std::filesystem::temp_directory_path() / "lumo-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder can be made");
  path_ = name;
}

TemporaryFolder::~TemporaryFolder()
{
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(const std::string& name, std::string_view text) const
{
  std::ofstream(path_ / name, std::ios::binary) << text;
  return get_file(name);
}

std::string TemporaryFolder::read(const std::string& name) const
{
  std::ostringstream text;
  text << std::ifstream(path_ / name, std::ios::binary).rdbuf();
  return text.str();
}

std::size_t TemporaryFolder::count_files() const
{
  const std::filesystem::directory_iterator first(path_);
  return static_cast<std::size_t>(std::distance(first, std::filesystem::directory_iterator()));
}

}  // namespace lumo::test
