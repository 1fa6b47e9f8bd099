#pragma once
// Blocks for image pixels and samples that do not clear themselves when they grow.
//
// A radiograph's samples and display bits come to 180 MB.  The kernel hands out new
// pages already zeroed, and a plain std::vector would write zeros over all of them once
// more before the reader writes the real values: a third of the time of a load went
// into that.  With this allocator resize() leaves new elements uninitialised, so the
// reader's own write is the first one.  Whoever grows such a block with resize(n) must
// write every element before it is read; assign(n, value) and resize(n, value) still
// fill as usual.

#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace sedra {

template <class T>
struct DefaultInitAllocator : std::allocator<T> {
  using value_type = T;
  template <class U>
  struct rebind {
    using other = DefaultInitAllocator<U>;
  };

  DefaultInitAllocator() noexcept = default;
  template <class U>
  DefaultInitAllocator(const DefaultInitAllocator<U>&) noexcept {}

  // Elements made without a value are default-initialised: for integers, not at all.
  template <class U>
  void construct(U* p) noexcept(std::is_nothrow_default_constructible_v<U>) {
    ::new (static_cast<void*>(p)) U;
  }
  template <class U, class... Args>
  void construct(U* p, Args&&... args) {
    ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...);
  }
};

using ByteBuffer = std::vector<uint8_t, DefaultInitAllocator<uint8_t>>;
using SampleBuffer = std::vector<uint16_t, DefaultInitAllocator<uint16_t>>;

}  // namespace sedra
