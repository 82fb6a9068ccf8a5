#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstddef>
#include <exception>
#include <functional>

namespace Varnel_Tolv_XML_Creation::test {

/// Runs `body` on a thread with a stack as small as hosts give theirs. What it raises is raised.
inline void onSmallStack(const std::function<void()>& body) {
#ifdef __SANITIZE_ADDRESS__
  constexpr std::size_t kStackBytes = std::size_t{1}
                                      << 20;  // its frames are several times as large
#else
  constexpr std::size_t kStackBytes = std::size_t{256} << 10;
#endif
  struct Call {
    const std::function<void()>& body;
    std::exception_ptr exception;
  } call{body, nullptr};
  const auto run = [](void* argument) -> void* {
    auto& self = *static_cast<Call*>(argument);
    try {
      self.body();
    } catch (...) {
      self.exception = std::current_exception();
    }
    return nullptr;
  };
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStackBytes), 0);
  pthread_t thread = {};
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &call), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
  if (call.exception) std::rethrow_exception(call.exception);
}

}  // namespace Varnel_Tolv_XML_Creation::test
