// Growable storage on the C allocator: the library stays free of the C++
// runtime, like libipacl, so a C program links it with a C driver.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>

namespace ipacl_nf {

// An array of trivially copyable elements; push fails (false) when memory
// runs out, leaving the array as it was.
template <class T>
class grow_array {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    grow_array() = default;
    grow_array(const grow_array &) = delete;
    grow_array &operator=(const grow_array &) = delete;
    ~grow_array() { std::free(items_); }

    bool reserve(uint32_t wanted) {
        if (wanted <= capacity_) return true;
        uint32_t grown = capacity_ ? capacity_ * 2 : 16;
        if (grown < wanted) grown = wanted;
        void *moved = std::realloc(items_, sizeof(T) * grown);
        if (!moved) return false;
        items_ = static_cast<T *>(moved);
        capacity_ = grown;
        return true;
    }
    bool push(const T &item) {
        if (!reserve(size_ + 1)) return false;
        items_[size_++] = item;
        return true;
    }
    // Room for `count` more elements, zero-filled; nullptr without memory.
    T *append(uint32_t count) {
        if (!reserve(size_ + count)) return nullptr;
        T *start = items_ + size_;
        std::memset(static_cast<void *>(start), 0, sizeof(T) * count);
        size_ += count;
        return start;
    }
    void clear() { size_ = 0; }

    T *data() { return items_; }
    const T *data() const { return items_; }
    uint32_t size() const { return size_; }
    T &operator[](uint32_t i) { return items_[i]; }
    const T &operator[](uint32_t i) const { return items_[i]; }

  private:
    T *items_ = nullptr;
    uint32_t size_ = 0;
    uint32_t capacity_ = 0;
};

using byte_buffer = grow_array<uint8_t>;

}  // namespace ipacl_nf
