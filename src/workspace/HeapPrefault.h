#pragma once

#include <QtGlobal>

namespace Ombrel {

// Maps, in one request to the system, the pages of heap memory that a burst
// of small allocations is about to use, so that the burst does not take one
// page fault per fresh page. Loading a folder allocates several times the
// size of its stylesheets in small strings and objects, and on machines where
// a fault is expensive (a virtual machine can spend 10 us on each) faulting
// page by page costs more than the parse itself; a populated range costs a
// tenth of that.
//
// While the object lives, about the given number of bytes of free heap is
// ready with its pages mapped; when the object is destroyed, what the burst
// did not use, and what it freed on its way, goes back to the system. On platforms or heaps
// where this cannot be done (or under a sanitizer's allocator) it does nothing.
class HeapPrefault
{
public:
    explicit HeapPrefault(qint64 bytes);
    ~HeapPrefault();
    HeapPrefault(const HeapPrefault &) = delete;
    HeapPrefault &operator=(const HeapPrefault &) = delete;

private:
    [[maybe_unused]] void *m_fence = nullptr;
};

} // namespace Ombrel
