#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <span>
#include <type_traits>

namespace kestavon {

/// Memory that was never written, for std::free(). Long blocks lie in large pages where the system
/// has them: the first touch of a small page can cost more than the work on its 4 KiB, and a
/// million records are spread over thousands. Null when there is none left.
void* unwrittenMemory(std::size_t bytes);

/// A fixed-length array whose elements start unwritten: a million records must not be touched
/// twice.
template <class T> class Column {
    static_assert(std::is_trivial_v<T>);

public:
    Column() = default;
    explicit Column(std::size_t size)
        : m_values(static_cast<T*>(unwrittenMemory(size * sizeof(T))))
        , m_size(size)
    {
        if (!m_values && size > 0)
            throw std::bad_alloc();
    }

    std::size_t size() const { return m_size; }
    T& operator[](std::size_t i) { return m_values.get()[i]; }
    const T& operator[](std::size_t i) const { return m_values.get()[i]; }
    T* data() { return m_values.get(); }
    std::span<const T> span() const { return {m_values.get(), m_size}; }

private:
    struct Free {
        void operator()(T* values) const { std::free(values); }
    };

    std::unique_ptr<T, Free> m_values;
    std::size_t m_size = 0;
};

} // namespace kestavon
