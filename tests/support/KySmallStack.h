// KySmallStack.h: runs code where a walk that recurses as deep as its data runs out of stack at once.
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

// Calls action() on a thread of its own with a stack of 256 KiB, and waits for its end.
template <typename TAction>
void onASmallStack(TAction action)
{
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
  const auto run = [](void* argument) -> void*
  {
    (*static_cast<TAction*>(argument))();
    return nullptr;
  };
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &action), 0);
  EXPECT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}
