#ifndef LUMO_TESTS_SUPPORT_SMT2_FILES_H
#define LUMO_TESTS_SUPPORT_SMT2_FILES_H

#include <filesystem>
#include <string>
#include <vector>

namespace lumo::test {

/// The .smt2 files of a folder, sorted; none if there is no such folder.
[[nodiscard]] std::vector<std::string> list_smt2_files(const std::filesystem::path& folder);

/// Files that solvers typically get: those of the folder that the environment variable LUMO_SMT2_FOLDER names, or of
/// a folder next to the checkout.
[[nodiscard]] std::vector<std::string> list_foreign_files();

/// The files that come with the tests.
[[nodiscard]] std::vector<std::string> list_own_files();

}  // namespace lumo::test

#endif
