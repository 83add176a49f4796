#pragma once

#include <cstdlib>

#include <unistd.h>

namespace kestavon::test {

/// The process works as an ordinary user while this lives, if it could do otherwise.
class AsOrdinaryUser {
public:
    AsOrdinaryUser()
    {
        if (::geteuid() == 0)
            m_changed = ::seteuid(65534) == 0;
    }
    ~AsOrdinaryUser()
    {
        if (m_changed && ::seteuid(0) != 0)
            std::abort();
    }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

private:
    bool m_changed = false;
};

} // namespace kestavon::test
