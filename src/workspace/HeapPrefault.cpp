#include "HeapPrefault.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

#if defined(__linux__) && defined(__GLIBC__)
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>
#endif

#if defined(__SANITIZE_ADDRESS__)
#define OMBREL_FOREIGN_ALLOCATOR
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define OMBREL_FOREIGN_ALLOCATOR
#endif
#endif

namespace Ombrel {

#if defined(__linux__) && defined(__GLIBC__) && defined(MADV_POPULATE_WRITE) &&                    \
    !defined(OMBREL_FOREIGN_ALLOCATOR)

namespace {

// Just below 128 KiB, the smallest size from which glibc serves a request with
// a mapping of its own: blocks of this size come from the heap, where the
// small allocations that follow will find them once they are freed.
constexpr std::size_t blockBytes = 124 * 1024;
// Beyond this the rest of a burst faults as usual.
constexpr qint64 maximumBytes = qint64(512) * 1024 * 1024;

// Maps every whole page between begin and end; pages already mapped are left
// as they are.
void populate(std::uintptr_t begin, std::uintptr_t end)
{
    const auto page = std::uintptr_t(sysconf(_SC_PAGESIZE));
    begin = (begin + page - 1) & ~(page - 1);
    end &= ~(page - 1);
    if (end > begin)
        madvise(reinterpret_cast<void *>(begin), end - begin, MADV_POPULATE_WRITE);
}

} // namespace

HeapPrefault::HeapPrefault(qint64 bytes)
{
    const qint64 count = std::min(bytes, maximumBytes) / qint64(blockBytes);
    if (count < 2)
        return;
    std::vector<std::uintptr_t> blocks;
    blocks.reserve(std::size_t(count));
    for (qint64 i = 0; i < count; ++i) {
        if (void *block = std::malloc(blockBytes))
            blocks.push_back(reinterpret_cast<std::uintptr_t>(block));
    }
    if (blocks.empty())
        return;
    std::sort(blocks.begin(), blocks.end());
    // Consecutive blocks are separated by a chunk header only: one request
    // per contiguous run.
    constexpr std::uintptr_t headerSlack = 64;
    std::uintptr_t runBegin = blocks.front();
    std::uintptr_t runEnd = runBegin + blockBytes;
    for (std::uintptr_t block : blocks) {
        if (block > runEnd + headerSlack) {
            populate(runBegin, runEnd);
            runBegin = block;
        }
        runEnd = block + blockBytes;
    }
    populate(runBegin, runEnd);
    // The highest block stays taken while the burst runs: freed blocks merge
    // into one free chunk below it instead of into the top of the heap, which
    // the allocator would hand back to the system at once.
    m_fence = reinterpret_cast<void *>(blocks.back());
    blocks.pop_back();
    for (std::uintptr_t block : blocks)
        std::free(reinterpret_cast<void *>(block));
}

HeapPrefault::~HeapPrefault()
{
    // What the burst left unused joins the top of the heap with the fence.
    // That, and the pages of what the burst freed on its way (the bytes of a
    // file and its decoded text, which the allocator may have placed low in
    // the heap once it saw such buffers come and go), go back to the system,
    // wherever they lie: held, they would count as the memory of the model
    // for as long as the folder is open. A burst too small to prefault
    // leaves too little to matter.
    if (!m_fence)
        return;
    std::free(m_fence);
    malloc_trim(0);
}

#else

HeapPrefault::HeapPrefault(qint64) {}

HeapPrefault::~HeapPrefault() = default;

#endif

} // namespace Ombrel
