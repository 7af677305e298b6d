#ifndef LUMO_TESTS_SUPPORT_WAITING_H
#define LUMO_TESTS_SUPPORT_WAITING_H

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <string>
#include <sys/types.h>
#include <thread>

namespace lumo::test {

/// Waits until a condition holds, for a limited time.
template <class Condition>
bool wait_until(Condition condition)
{
  for (int i = 0; i < 3000; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

/// Whether a process has ended, possibly without being waited for by the process that adopted it.
inline bool is_gone(pid_t process)
{
  if (kill(process, 0) != 0 && errno == ESRCH) return true;
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string number;
  std::string name;
  std::string state;
  return file >> number >> name >> state && state == "Z";
}

/// The numbers of the children of a process, or of one of its threads, as the system lists them, including those
/// that were not waited for.
inline std::string list_children(pid_t thread)
{
  std::ifstream file("/proc/" + std::to_string(thread) + "/task/" + std::to_string(thread) + "/children");
  std::string children;
  std::getline(file, children);
  return children;
}

/// Waits until the process of that number, given as text, has ended.
inline bool goes_away(const std::string& process)
{
  return wait_until([&] { return is_gone(std::stoi(process)); });
}

}  // namespace lumo::test

#endif
