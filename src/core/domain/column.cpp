#include "core/domain/column.h"

#include <sys/mman.h>

namespace kestavon {

void* unwrittenMemory(std::size_t bytes)
{
    constexpr std::size_t largePage = std::size_t{2} << 20;
    if (bytes < largePage)
        return std::malloc(bytes);
    const auto wholePages = bytes / largePage * largePage;
    auto* const memory
        = std::aligned_alloc(largePage, bytes == wholePages ? bytes : wholePages + largePage);
    // The last part stays in small pages, so that no more memory is taken than is asked for. The
    // advice may be refused: then the pages are small everywhere.
    if (memory != nullptr)
        ::madvise(memory, wholePages, MADV_HUGEPAGE);
    return memory;
}

} // namespace kestavon
