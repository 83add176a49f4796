#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace kestavon::test {

/// Gives an environment variable another value, or none, while it lives.
class ScopedVariable {
public:
    ScopedVariable(std::string name, const std::optional<std::string>& value)
        : m_name(std::move(name))
    {
        if (const auto* previous = std::getenv(m_name.c_str()))
            m_previous = previous;
        set(value);
    }
    ~ScopedVariable() { set(m_previous); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    void set(const std::optional<std::string>& value) const
    {
        if (value)
            ::setenv(m_name.c_str(), value->c_str(), 1);
        else
            ::unsetenv(m_name.c_str());
    }

    std::string m_name;
    std::optional<std::string> m_previous;
};

} // namespace kestavon::test
