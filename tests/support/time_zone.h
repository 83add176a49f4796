#pragma once

#include "support/environment_variable.h"

#include <time.h>

namespace kestavon::test {

/// Puts the whole process into a time zone of the system's database while it lives.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const std::string& name)
    {
        m_variable.emplace("TZ", name);
        ::tzset();
    }
    ~ScopedTimeZone()
    {
        m_variable.reset();
        ::tzset();
    }
    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

private:
    std::optional<ScopedVariable> m_variable;
};

} // namespace kestavon::test
