#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include <time.h>

namespace kestavon::testing {

/// Puts the whole process into a time zone of the system's database while it lives.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const std::string& name)
    {
        if (const auto* previous = std::getenv("TZ"))
            m_previous = previous;
        ::setenv("TZ", name.c_str(), 1);
        ::tzset();
    }

    ~ScopedTimeZone()
    {
        if (m_previous)
            ::setenv("TZ", m_previous->c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }

    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

private:
    std::optional<std::string> m_previous;
};

} // namespace kestavon::testing
