#pragma once

namespace kestavon {

/// For a process without a window, which has nobody to give way to: from now on the threads of
/// every `SerialQueue` are as urgent as their callers. Before the first queue is made.
void giveWayToNobody();

} // namespace kestavon
