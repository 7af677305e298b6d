#ifndef LUMO_TESTS_SUPPORT_TEMPORARY_FOLDER_H
#define LUMO_TESTS_SUPPORT_TEMPORARY_FOLDER_H

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace lumo::test {

/// A new folder that the destructor removes with its content.
class TemporaryFolder
{
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  [[nodiscard]] const std::filesystem::path& get_path() const { return path_; }
  /// The path of a file in the folder, whether it exists or not.
  [[nodiscard]] std::string get_file(const std::string& name) const { return (path_ / name).string(); }
  /// Writes a file into the folder and returns its path.
  std::string write(const std::string& name, std::string_view text) const;
  /// The content of a file in the folder, empty if the file does not exist.
  [[nodiscard]] std::string read(const std::string& name) const;
  [[nodiscard]] std::size_t count_files() const;

 private:
  std::filesystem::path path_;
};

}  // namespace lumo::test

#endif
