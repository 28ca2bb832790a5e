// The globals of the API frame and the aligned block allocator.
#include "vld/api/vld_context.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

vld_context* vldGc = nullptr;
vld_db vlddb;

namespace {

// What stands ahead of an aligned block: the raw allocation and the block's size.
struct vld_block_head {
    void* raw;
    size_t size;
};
static_assert(sizeof(vld_block_head) <= 16);

vld_block_head* vld_head_of(void* block)
{
    return (vld_block_head*)((char*)block - 16);
}

} // namespace

// Returns a 16-aligned block of `size` bytes holding the contents of `old` (as far as both
// reach). A call with the old size returns the same block. Allocation failure ends the
// process, like every allocator of the library.
void* KSP_vld_realloc_aligned(void* old, size_t size)
{
    if (old && vld_head_of(old)->size == size)
        return old;
    void* raw = size > SIZE_MAX - 32 ? nullptr : std::malloc(size + 32);
    if (!raw) {
        std::fprintf(stderr, "KSP_vld_realloc_aligned: out of memory for %.0f bytes\n", (double)size);
        std::abort();
    }
    uintptr_t at = ((uintptr_t)raw + 16 + 15) & ~(uintptr_t)15;
    void* block = (void*)at;
    vld_block_head* head = vld_head_of(block);
    head->raw = raw;
    head->size = size;
    if (old) {
        size_t keep = vld_head_of(old)->size < size ? vld_head_of(old)->size : size;
        std::memcpy(block, old, keep);
        KSP_vld_free_aligned(old);
    }
    return block;
}

// Frees a block of KSP_vld_realloc_aligned; null is ignored.
void KSP_vld_free_aligned(void* block)
{
    if (!block)
        return;
    std::free(vld_head_of(block)->raw);
}
