#include "tests/support/smt2_files.h"

#include <algorithm>
#include <cstdlib>

namespace lumo::test {

std::vector<std::string> list_smt2_files(const std::filesystem::path& folder)
{
  std::vector<std::string> files;
  if (!std::filesystem::is_directory(folder)) return files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".smt2") files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> list_foreign_files()
{
  const char* chosen = std::getenv("LUMO_SMT2_FOLDER");  // NOLINT(concurrency-mt-unsafe)
  if (chosen != nullptr) return list_smt2_files(chosen);
  return list_smt2_files(std::filesystem::path(LUMO_SOURCE_DIR) / "../shared/data/real");
}

std::vector<std::string> list_own_files()
{
  return list_smt2_files(std::filesystem::path(LUMO_SOURCE_DIR) / "tests/data");
}

}  // namespace lumo::test
