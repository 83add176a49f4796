#pragma once

namespace kestavon {

/// Milliseconds since the kernel started this process, to its clock tick (10 ms); -1 when it does
/// not tell. Any thread.
long processAgeMilliseconds();

} // namespace kestavon
