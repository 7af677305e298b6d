#ifndef LUMO_TESTS_SUPPORT_SMALL_STACK_H
#define LUMO_TESTS_SUPPORT_SMALL_STACK_H

#include <cstddef>
#include <functional>
#include <pthread.h>
#include <stdexcept>

namespace lumo::test {

/// Runs an action to its end on a stack of 256 KiB, on which a walk that recurses once per level of a deep
/// term cannot get far. The action must not throw.
inline void run_on_small_stack(const std::function<void()>& action)
{
  constexpr std::size_t kStackSize = std::size_t{256} * 1024;
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kStackSize);
  const auto run = [](void* data) -> void* {
    (*static_cast<const std::function<void()>*>(data))();
    return nullptr;
  };
  pthread_t thread;
  const int failure = pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&action));
  pthread_attr_destroy(&attributes);
  if (failure != 0) throw std::runtime_error("no thread with a small stack could be started");
  pthread_join(thread, nullptr);
}

}  // namespace lumo::test

#endif
