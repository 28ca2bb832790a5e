// The attribute offsets that glEnd writes into the record of a captured primitive, for every
// combination of the attribute bits: each offset is the attribute's word in the captured
// vertex when the program set it since glBegin, else 0, and nothing else in the record moves;
// the index run of a GL_TRIANGLES primitive; and which primitives need the expanded array.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "geometry_context.h"
#include "vld/api/vld_capture.h"

TEST(CaptureOffsets, EachOffsetFollowsItsBitsAndNothingElseIsWritten)
{
    for (uint32_t bits = 0; bits < 1024; ++bits) {
        // Bit 9 stands for the high bits of the mask, which name no attribute.
        const uint32_t mask = (bits & 511) | ((bits & 512) ? VLD_ATTR_POOLING_OFF | 0x00FF0000u : 0);
        vld_dl_record r;
        std::memset((void*)&r, 0x5A, sizeof r);
        vld_dl_record untouched = r;
        KSP_vld_capture_offsets(r, mask);
        SCOPED_TRACE(mask);
        EXPECT_EQ(r.normal_offset, (mask & VLD_ATTR_NORMAL) ? VLD_VX_NORMAL : 0);
        EXPECT_EQ(r.texcoord_offset, (mask & (VLD_ATTR_TEX0 | VLD_ATTR_TEX1)) ? VLD_VX_TEXCOORD : 0);
        EXPECT_EQ(r.color_offset, (mask & VLD_ATTR_COLOR) ? VLD_VX_COLOR : 0);
        EXPECT_EQ(r.ambient_offset, (mask & VLD_ATTR_AMBIENT) ? VLD_VX_AMBIENT : 0);
        EXPECT_EQ(r.diffuse_offset, (mask & VLD_ATTR_DIFFUSE) ? VLD_VX_DIFFUSE : 0);
        EXPECT_EQ(r.specular_offset, (mask & VLD_ATTR_SPECULAR) ? VLD_VX_SPECULAR : 0);
        EXPECT_EQ(r.emission_offset, (mask & VLD_ATTR_EMISSION) ? VLD_VX_EMISSION : 0);
        EXPECT_EQ(r.shininess_offset, (mask & VLD_ATTR_SHININESS) ? VLD_VX_SHININESS : 0);
        // Everything but the eight offsets is as it was.
        std::memcpy(&untouched.normal_offset, &r.normal_offset, 8 * sizeof(int16_t));
        ASSERT_EQ(std::memcmp(&untouched, &r, sizeof r), 0);
    }
}

TEST(CaptureOffsets, TriangleIndicesCountUpAndStopAtTheVertexCount)
{
    // GL_TRIANGLES writes 0 to n - 1, a trailing partial triangle's too, and nothing after.
    for (int64_t n = 0; n <= 41; ++n) {
        std::vector<uint32_t> out((size_t)n + 8, 0xA5A5A5A5u);
        EXPECT_EQ(KSP_vld_capture_triangle_indices(GL_TRIANGLES, n, out.data()), n);
        for (int64_t i = 0; i < n; ++i)
            ASSERT_EQ(out[(size_t)i], (uint32_t)i) << "n " << n;
        for (size_t i = (size_t)n; i < out.size(); ++i)
            ASSERT_EQ(out[i], 0xA5A5A5A5u) << "n " << n << ": written past the count";
    }
}

namespace {

// Captures `n` vertices of `mode` through glBegin, glVertex and glEnd.
void Capture(GLenum mode, int n)
{
    __vlddo_Begin(mode);
    for (int i = 0; i < n; ++i)
        __vlddo_Vertex3f((float)(i % 3), (float)(i % 2), -2.0f);
    __vlddo_End();
}

} // namespace

TEST(CaptureOffsets, TheExpandedArrayGrowsToTheNeededSizeOfEveryPrimitive)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    // Faces and points are drawn from the captured vertices, yet the expanded array still
    // takes the size each primitive needs: n for GL_TRIANGLES and GL_POINTS, 3(n >> 1) for
    // GL_QUADS, grown to that plus 256 when it is not below the capacity.
    Capture(GL_TRIANGLES, 9);
    EXPECT_EQ(c->expandedCapacity, 9 + 256);
    Capture(GL_QUADS, 8);
    Capture(GL_POINTS, 5);
    EXPECT_EQ(c->expandedCapacity, 9 + 256);
    Capture(GL_QUADS, 200);
    EXPECT_EQ(c->expandedCapacity, 3 * 100 + 256);
    EXPECT_EQ(c->indexCapacity, 3 * 100 + 256);
    // Drawn lines are expanded into pairs: need 2n - 2.
    Capture(GL_LINE_STRIP, 300);
    EXPECT_EQ(c->expandedCapacity, 598 + 256);
    // List content gathers faces into it (compile only: nothing drawn).
    c->executeFlag = 0;
    c->compileFlag = 1;
    Capture(GL_QUAD_STRIP, 400);
    EXPECT_EQ(c->expandedCapacity, 3 * 398 + 256);
    c->compileFlag = 0;
    c->executeFlag = 1;
    KSP_vld_free_aligned(c->vertexArray);
    KSP_vld_free_aligned(c->indexArray);
    KSP_vld_free_aligned(c->expandedArray);
    KSP_vld_free_aligned(c->faceArray);
}
