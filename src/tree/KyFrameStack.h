// KyFrameStack.h: the levels of a walk that a recursive description would keep on the call stack.
#pragma once

#include <cstring>
#include <type_traits>

#include "errorhandling/KyNPoolAllocator.h"

// A stack of small plain records. The first levels, which cover every ordinary tree, live in the object; deeper ones in
// one block that grows by doubling. With no memory left, push records the base library's report and gives false.
template <typename Frame>
class KyFrameStack
{
public:
  KyFrameStack() = default;
  KyFrameStack(const KyFrameStack&) = delete;
  KyFrameStack& operator=(const KyFrameStack&) = delete;
  ~KyFrameStack() { KyNPoolAllocator::release(m_block); }

  bool isEmpty() const noexcept { return m_count == 0; }
  Frame& top() noexcept { return m_frames[m_count - 1]; }
  void pop() noexcept { --m_count; }

  bool push(KyCErrorListPool& pool, const Frame& frame)
  {
    if (m_count == m_capacity && !grow(pool)) return false;
    m_frames[m_count++] = frame;
    return true;
  }

private:
  static constexpr unsigned int inlineLevels = 32;

  bool grow(KyCErrorListPool& pool)
  {
    const std::size_t capacity = std::size_t{m_capacity} * 2;
    void* const block = KyNPoolAllocator::reallocate(pool, m_block, capacity * sizeof(Frame));
    if (block == nullptr) return false;
    if (m_block == nullptr) std::memcpy(block, m_inline, sizeof(m_inline));
    m_block = block;
    m_frames = static_cast<Frame*>(block);
    m_capacity = static_cast<unsigned int>(capacity);
    return true;
  }

  static_assert(std::is_trivially_copyable<Frame>::value, "frames are moved as bytes");

  Frame m_inline[inlineLevels];
  Frame* m_frames = m_inline;
  void* m_block = nullptr;
  unsigned int m_count = 0;
  unsigned int m_capacity = inlineLevels;
};
