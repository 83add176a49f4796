#pragma once

#include <functional>
#include <optional>
#include <string_view>

namespace kestavon::test {

/// One call of the system that this test program makes.
struct SystemCall {
    std::string_view call; ///< "renameat2", "unlinkat" …
    std::string_view name; ///< the entry that it is about; empty for one that is only open
    std::string_view target; ///< where to, when it has two
    unsigned flags = 0; ///< its flags; of lseek, where from
};

/// What comes of a call instead of what it would do.
struct Fault {
    int error = 0; ///< what the call answers; 0: that it is done
    bool isDone = false; ///< and what it does, whatever it answers
};

/// Stands between the test and the system while it lives: `rule` is asked before every one of the
/// calls in faulty_calls.cpp, may do something first, and lets pass what it gives nothing for. Not
/// for several threads.
class FaultyCalls {
public:
    using Rule = std::function<std::optional<Fault>(const SystemCall&)>;

    explicit FaultyCalls(Rule rule);
    ~FaultyCalls();
    FaultyCalls(const FaultyCalls&) = delete;
    FaultyCalls& operator=(const FaultyCalls&) = delete;
};

/// As long as this lives, the system does not tell through which volume an entry was reached.
class WithoutMountNumbers {
public:
    WithoutMountNumbers();
    ~WithoutMountNumbers();
    WithoutMountNumbers(const WithoutMountNumbers&) = delete;
    WithoutMountNumbers& operator=(const WithoutMountNumbers&) = delete;
};

} // namespace kestavon::test
