// PtrArray: the host's reference-counted shared array. Copies share the elements; the last one frees
// them. The count of references is atomic, the elements are not guarded.
#pragma once

#include <ombrix/memory.h>

#include <atomic>
#include <new>
#include <type_traits>
#include <utility>

namespace OUtils {

template <class T>
class PtrArray {
    static_assert(std::is_trivially_destructible_v<T>, "elements are freed without being destroyed");
    static_assert(alignof(T) <= alignof(std::max_align_t));

public:
    PtrArray() = default;
    // n elements, each value-initialised.
    explicit PtrArray(int n) { alloc(n); }
    PtrArray(const PtrArray& other) : header(other.header)
    {
        if (header) header->references.fetch_add(1, std::memory_order_relaxed);
    }
    PtrArray(PtrArray&& other) noexcept : header(std::exchange(other.header, nullptr)) {}
    ~PtrArray() { release(); }

    PtrArray& operator=(PtrArray other) noexcept
    {
        std::swap(header, other.header);
        return *this;
    }

    // Drops this reference and takes n new value-initialised elements. Returns 1, or 0 and stays empty
    // when n is not above 0 or memory is short.
    int alloc(int n)
    {
        release();
        if (n <= 0) return 0;
        const auto elementCount = static_cast<std::size_t>(n);
        if (elementCount > (std::numeric_limits<std::size_t>::max() - sizeof(Header)) / sizeof(T)) return 0;
        void* block = omalloc(sizeof(Header) + elementCount * sizeof(T));
        if (!block) return 0;
        header = new (block) Header;
        header->count = n;
        T* elements = first();
        for (std::size_t i = 0; i < elementCount; ++i)
            new (elements + i) T();
        return 1;
    }
    void clear() { release(); }

    int count() const { return header ? header->count : 0; }
    T* ptr() { return header ? first() : nullptr; }
    const T* ptr() const { return header ? first() : nullptr; }
    T& operator[](int i) { return first()[i]; }
    const T& operator[](int i) const { return first()[i]; }
    T* begin() { return ptr(); }
    T* end() { return ptr() + count(); }
    const T* begin() const { return ptr(); }
    const T* end() const { return ptr() + count(); }

private:
    struct alignas(std::max_align_t) Header {
        std::atomic<int> references{1};
        int count = 0;
    };

    T* first() const { return reinterpret_cast<T*>(header + 1); }
    void release()
    {
        if (header && header->references.fetch_sub(1, std::memory_order_acq_rel) == 1) ofree(header);
        header = nullptr;
    }

    Header* header = nullptr;
};

} // namespace OUtils
