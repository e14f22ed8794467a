// A queue of fixed capacity, first in, first out, that never allocates.
#pragma once

#include <array>
#include <cstddef>

namespace vok {

template <typename T, std::size_t SIZE>
class Ring {
 public:
  bool empty() const { return count_ == 0; }
  bool full() const { return count_ == SIZE; }
  std::size_t size() const { return count_; }

  /// The oldest entry; only when there is one.
  T& front() { return entries_[first_]; }
  const T& front() const { return entries_[first_]; }
  /// The entry behind `index` older ones; only below `size()`.
  const T& operator[](std::size_t index) const { return entries_[(first_ + index) % SIZE]; }

  /// Appends; a full ring loses its oldest entry for it.
  void push(const T& entry) {
    if (full()) pop();
    entries_[(first_ + count_) % SIZE] = entry;
    ++count_;
  }

  /// Removes the oldest entry; an empty ring stays as it is.
  void pop() {
    if (empty()) return;
    first_ = (first_ + 1) % SIZE;
    --count_;
  }

  void clear() { count_ = 0; }

 private:
  std::array<T, SIZE> entries_{};
  std::size_t first_ = 0;
  std::size_t count_ = 0;
};

}  // namespace vok
