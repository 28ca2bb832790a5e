// The fixed records and the aligned allocator.
#include <gtest/gtest.h>

#include <cstring>

#include "vld/api/vld_context.h"

namespace {

TEST(Records, DrawRecordReadsOffsetAndAddressForms)
{
    alignas(16) unsigned char block[VLD_DL_HEAD_BYTES + 28 + 140];
    std::memset(block, 0, sizeof block);
    vld_dl_record* r = (vld_dl_record*)block;
    r->flags = VLD_DLF_FACES_INLINE | VLD_DLF_VERTICES_INLINE;
    r->faces = VLD_DL_HEAD_BYTES;
    r->vertices = VLD_DL_HEAD_BYTES + 28;
    EXPECT_EQ(vld_dl_faces_of(r), (void*)(block + 84));
    EXPECT_EQ((void*)vld_dl_vertices_of(r), (void*)(block + 112));

    vld_dl_record head;
    std::memset(&head, 0, sizeof head);
    float vertices[35];
    vld_face faces[1];
    head.flags = VLD_DLF_FACES_INLINE | VLD_DLF_STRIP;
    vld_dl_set_faces_address(&head, faces);
    vld_dl_set_vertices_address(&head, vertices);
    EXPECT_EQ(head.flags, VLD_DLF_STRIP);
    EXPECT_EQ(vld_dl_faces_of(&head), (void*)faces);
    EXPECT_EQ(vld_dl_vertices_of(&head), vertices);
}

TEST(Records, AlignedBlocksKeepSizeAndContents)
{
    unsigned char* a = (unsigned char*)KSP_vld_realloc_aligned(nullptr, 40);
    EXPECT_EQ((uintptr_t)a % 16, 0u);
    for (int i = 0; i < 40; ++i)
        a[i] = (unsigned char)i;
    EXPECT_EQ(KSP_vld_realloc_aligned(a, 40), (void*)a);
    unsigned char* b = (unsigned char*)KSP_vld_realloc_aligned(a, 4000);
    EXPECT_EQ((uintptr_t)b % 16, 0u);
    for (int i = 0; i < 40; ++i)
        ASSERT_EQ(b[i], i);
    unsigned char* c = (unsigned char*)KSP_vld_realloc_aligned(b, 8);
    EXPECT_EQ(c[7], 7);
    KSP_vld_free_aligned(c);
    KSP_vld_free_aligned(nullptr);
}

} // namespace
