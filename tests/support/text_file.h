#ifndef LUMO_TESTS_SUPPORT_TEXT_FILE_H
#define LUMO_TESTS_SUPPORT_TEXT_FILE_H

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace lumo::test {

/// The whole content of a file. The test fails if it cannot be opened.
[[nodiscard]] inline std::string read_text_file(const std::filesystem::path& name)
{
  std::ifstream file(name, std::ios::binary);
  if (!file) throw std::runtime_error("the test cannot open " + name.string());
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace lumo::test

#endif
