#ifndef LUMO_TESTS_SOLVERS_NO_MORE_FILES_H
#define LUMO_TESTS_SOLVERS_NO_MORE_FILES_H

#include <sys/resource.h>

#include <gtest/gtest.h>

namespace lumo::test {

/// Lets the process open no more files for the lifetime of the object.
class NoMoreFiles
{
 public:
  NoMoreFiles()
  {
    if (getrlimit(RLIMIT_NOFILE, &before_) == 0) set({0, before_.rlim_max});
  }
  NoMoreFiles(const NoMoreFiles&) = delete;
  NoMoreFiles& operator=(const NoMoreFiles&) = delete;
  ~NoMoreFiles() { set(before_); }

 private:
  static void set(const rlimit& limit) { EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0); }

  rlimit before_{};
};

}  // namespace lumo::test

#endif
