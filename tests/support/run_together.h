#ifndef LUMO_TESTS_SUPPORT_RUN_TOGETHER_H
#define LUMO_TESTS_SUPPORT_RUN_TOGETHER_H

#include <cstddef>
#include <latch>
#include <thread>
#include <vector>

namespace lumo::test {

/// Calls work(0) to work(num_threads - 1) at the same time, each in its own thread, and returns when all have
/// returned.
template <class Work>
void run_together(std::size_t num_threads, Work work)
{
  std::latch start(static_cast<std::ptrdiff_t>(num_threads));
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < num_threads; ++i) {
    threads.emplace_back([&start, &work, i] {
      start.arrive_and_wait();
      work(i);
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

}  // namespace lumo::test

#endif
