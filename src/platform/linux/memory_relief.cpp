#include "platform/memory_relief.h"

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

#include <malloc.h>

namespace kestavon {

bool SystemMemoryRelief::useBlock()
{
    void* const block = std::aligned_alloc(blockAlignment, blockBytes);
    if (!block)
        return false;
    std::memset(block, 0, blockBytes);
    // Nobody reads the block, so that the compiler would leave out the filling, and with it the
    // block: without this, nothing would be touched.
    asm volatile("" : : "r"(block) : "memory");
    std::free(block);
    return true;
}

void SystemMemoryRelief::relieve()
{
    using namespace std::chrono_literals;
    ::malloc_trim(0);
    for (int i = 0; i < blocks; ++i)
        useBlock();
    std::this_thread::sleep_for(700ms);
}

} // namespace kestavon
