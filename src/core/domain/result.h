#pragma once

#include <utility>
#include <variant>

namespace kestavon {

/// Stands for the value of an operation that gives none.
struct Done {
    friend bool operator==(const Done&, const Done&) = default;
};

/// What an operation gave, or why it failed. Test it like a pointer before reading it.
template <class T, class E> class [[nodiscard]] Result {
public:
    Result(T value) // NOLINT(google-explicit-constructor): a return statement names either
        : m_content(std::in_place_index<0>, std::move(value))
    {
    }
    Result(E error) // NOLINT(google-explicit-constructor)
        : m_content(std::in_place_index<1>, std::move(error))
    {
    }

    explicit operator bool() const { return m_content.index() == 0; }
    T& operator*() { return std::get<0>(m_content); }
    const T& operator*() const { return std::get<0>(m_content); }
    T* operator->() { return &std::get<0>(m_content); }
    const T* operator->() const { return &std::get<0>(m_content); }
    const E& error() const { return std::get<1>(m_content); }

private:
    std::variant<T, E> m_content;
};

} // namespace kestavon
