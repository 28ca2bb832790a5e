// Vertex capture: glBegin, glVertex and glEnd of the direct layer. Every vertex is copied
// whole into the context's vertex array; glEnd turns the primitive into a draw record for
// the pipeline, into list content, or both, as the routing bytes say.
#include "vld/api/vld_capture.h"

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "vld/api/vld_callees.h"
#include "vld/api/vld_current.h"
#include "vld/api/vld_export.h"
#include "vld/grxf/vld_planes.h"

namespace {

// Grows a capture array of `T` to `need` + 256 elements when `need` is not below its
// capacity, keeping the contents and zeroing everything from the old capacity on.
template <typename T>
void vld_grow(T*& array, int32_t& capacity, int64_t need)
{
    if (need < capacity)
        return;
    int64_t grown = need + 256;
    array = (T*)KSP_vld_realloc_aligned(array, (size_t)grown * sizeof(T));
    std::memset((void*)(array + capacity), 0, (size_t)(grown - capacity) * sizeof(T));
    capacity = (int32_t)grown;
}

// Copies record `from` of `src` to position `at` of the expanded array.
inline void vld_put(vld_vertex* dst, int64_t at, const vld_vertex* src, int64_t from)
{
    dst[at] = src[from];
}

// Expands a line primitive into pairs of whole records; returns the count written.
} // namespace

int64_t KSP_vld_capture_expand_lines(GLenum type, const vld_vertex* v, int64_t n, vld_vertex* out)
{
    int64_t k = 0;
    if (type == GL_LINES) {
        for (int64_t i = 0; i < n; ++i)
            vld_put(out, k++, v, i);
        return k;
    }
    for (int64_t i = 0; i + 1 < n; ++i) {
        vld_put(out, k++, v, i);
        vld_put(out, k++, v, i + 1);
    }
    if (type == GL_LINE_LOOP && n >= 1) {
        vld_put(out, k++, v, n - 1);
        vld_put(out, k++, v, 0);
    }
    return k;
}

// Writes the vertex indices of the triangles of a primitive, three per triangle, in the
// order the face paths draw them; returns the number of indices written. `out` is null
// that is big enough. GL_TRIANGLES writes all n indices, a trailing partial
// triangle's too; GL_QUADS writes complete quads only.
int64_t KSP_vld_capture_triangle_indices(GLenum type, int64_t n, uint32_t* out)
{
    int64_t k = 0;
    auto put = [&](int64_t a, int64_t b, int64_t c) {
        out[k] = (uint32_t)a;
        out[k + 1] = (uint32_t)b;
        out[k + 2] = (uint32_t)c;
        k += 3;
    };
    switch (type) {
    case GL_TRIANGLES: {
        int64_t i = 0;
#if defined(__SSE2__)
        // Eight indices a step in two stores: 0 to 7, then each lane eight on.
        __m128i low = _mm_setr_epi32(0, 1, 2, 3), high = _mm_setr_epi32(4, 5, 6, 7);
        for (; i + 8 <= n; i += 8) {
            _mm_storeu_si128((__m128i*)(out + i), low);
            _mm_storeu_si128((__m128i*)(out + i + 4), high);
            low = _mm_add_epi32(low, _mm_set1_epi32(8));
            high = _mm_add_epi32(high, _mm_set1_epi32(8));
        }
        if (i + 4 <= n) {
            _mm_storeu_si128((__m128i*)(out + i), low);
            i += 4;
        }
#endif
        for (; i < n; ++i)
            out[i] = (uint32_t)i;
        k = n > 0 ? n : 0;
        break;
    }
    case GL_TRIANGLE_STRIP:
        for (int64_t i = 2; i < n; ++i) {
            if ((i & 1) == 0)
                put(i - 2, i - 1, i);
            else
                put(i - 1, i - 2, i);
        }
        break;
    case GL_TRIANGLE_FAN:
    case GL_POLYGON:
        for (int64_t i = 2; i < n; ++i)
            put(0, i - 1, i);
        break;
    case GL_QUADS:
        for (int64_t i = 2; i + 1 < n; i += 4) {
            put(i - 2, i - 1, i);
            put(i - 2, i, i + 1);
        }
        break;
    case GL_QUAD_STRIP:
        for (int64_t i = 3; i < n; i += 2) {
            put(i - 3, i - 2, i);
            put(i - 3, i, i - 1);
        }
        break;
    default:
        break;
    }
    return k;
}

namespace {

// Gathers whole records along an index list into `out`.
void vld_gather(const vld_vertex* v, const uint32_t* indices, int64_t count, vld_vertex* out)
{
    for (int64_t i = 0; i < count; ++i)
        out[i] = v[indices[i]];
}

} // namespace

// Sets the attribute offsets of a record from the attribute mask of the primitive: an
// attribute the program did not set since glBegin is constant over the primitive and is
// left to the context's current value.
void KSP_vld_capture_offsets(vld_dl_record& r, uint32_t mask)
{
#if defined(__SSE2__)
    // The eight offsets stand side by side in the head, normal_offset first: each lane keeps
    // its word position when the mask has its bit (or bits), else 0.
    static_assert(offsetof(vld_dl_record, shininess_offset) - offsetof(vld_dl_record, normal_offset) == 14);
    const __m128i bits = _mm_setr_epi16(VLD_ATTR_NORMAL, VLD_ATTR_TEX0 | VLD_ATTR_TEX1, VLD_ATTR_COLOR,
                                        VLD_ATTR_AMBIENT, VLD_ATTR_DIFFUSE, VLD_ATTR_EMISSION,
                                        VLD_ATTR_SPECULAR, VLD_ATTR_SHININESS);
    const __m128i offsets = _mm_setr_epi16(VLD_VX_NORMAL, VLD_VX_TEXCOORD, VLD_VX_COLOR, VLD_VX_AMBIENT,
                                           VLD_VX_DIFFUSE, VLD_VX_EMISSION, VLD_VX_SPECULAR, VLD_VX_SHININESS);
    const __m128i absent =
        _mm_cmpeq_epi16(_mm_and_si128(_mm_set1_epi16((short)(mask & 0xFFFF)), bits), _mm_setzero_si128());
    _mm_storeu_si128((__m128i*)&r.normal_offset, _mm_andnot_si128(absent, offsets));
#else
    r.normal_offset = (mask & VLD_ATTR_NORMAL) ? VLD_VX_NORMAL : 0;
    r.texcoord_offset = (mask & (VLD_ATTR_TEX0 | VLD_ATTR_TEX1)) ? VLD_VX_TEXCOORD : 0;
    r.color_offset = (mask & VLD_ATTR_COLOR) ? VLD_VX_COLOR : 0;
    r.ambient_offset = (mask & VLD_ATTR_AMBIENT) ? VLD_VX_AMBIENT : 0;
    r.diffuse_offset = (mask & VLD_ATTR_DIFFUSE) ? VLD_VX_DIFFUSE : 0;
    r.specular_offset = (mask & VLD_ATTR_SPECULAR) ? VLD_VX_SPECULAR : 0;
    r.emission_offset = (mask & VLD_ATTR_EMISSION) ? VLD_VX_EMISSION : 0;
    r.shininess_offset = (mask & VLD_ATTR_SHININESS) ? VLD_VX_SHININESS : 0;
#endif
}

namespace {

// A record head for captured vertices: 35-word stride, no sphere, general format.
vld_dl_record vld_capture_head(uint32_t type, int32_t count)
{
    vld_dl_record r;
    std::memset(&r, 0, sizeof r);
    r.type = type;
    r.vertex_count = count;
    r.stride = VLD_VX_STRIDE;
    r.position_offset = VLD_VX_POSITION;
    std::memcpy(&r.radius, &VLD_NO_SPHERE_BITS, 4);
    return r;
}

// Runs the coordinate reduction over both texture sets of the `count` captured vertices of
// ctx; the records no longer hold the template's coordinates.
void vld_reduce_coords(vld_context* ctx, int64_t count)
{
    if (count <= 0)
        return;
    vld_template_steady_changed(ctx);
    vld_vertex* v = ctx->vertexArray;
    KSI_imp_txr_reduce_coords("Veldra: ", "", "", GL_CLAMP, (int)count, v[0].texcoord0, VLD_VX_STRIDE);
    KSI_imp_txr_reduce_coords("Veldra: ", "", "", GL_CLAMP, (int)count, v[0].texcoord1, VLD_VX_STRIDE);
}

// Emits the list content of the primitive just captured (glEnd while compiling).
void vld_compile_primitive(vld_context* ctx)
{
    GLenum type = ctx->beginType;
    int64_t n = ctx->vertexCount;
    vld_reduce_coords(ctx, n);

    const vld_vertex* source = ctx->vertexArray;
    int64_t count = n;
    switch (type) {
    case GL_POINTS:
    case GL_TRIANGLES:
        break;
    case GL_LINES:
    case GL_LINE_LOOP:
    case GL_LINE_STRIP:
        count = KSP_vld_capture_expand_lines(type, ctx->vertexArray, n, ctx->expandedArray);
        source = ctx->expandedArray;
        break;
    case GL_POLYGON:
        if (n <= 3)
            break;
        [[fallthrough]];
    default:
        count = KSP_vld_capture_triangle_indices(type, n, ctx->indexArray);
        vld_gather(ctx->vertexArray, ctx->indexArray, count, ctx->expandedArray);
        source = ctx->expandedArray;
        break;
    }

    switch (type) {
    case GL_POINTS:
        KSP_vld_flush_update_list(~ctx->beginAttrMask);
        KSP_vld_draw_lines_or_points(ctx, VLD_DL_POINTS, true, count, source);
        break;
    case GL_LINES:
    case GL_LINE_LOOP:
    case GL_LINE_STRIP:
        KSP_vld_flush_update_list(~ctx->beginAttrMask);
        KSP_vld_draw_lines_or_points(ctx, VLD_DL_LINES, true, count, source);
        break;
    default: {
        if (count < 3)
            break;
        int kind = type == GL_TRIANGLE_STRIP ? 2 : 1;
        for (int64_t i = 0; i + 3 <= count; i += 3)
            KSP_vld_build_dl_faces(source + i, kind);
        break;
    }
    }
}

} // namespace

// The face drawer: builds a type 3 record over the captured vertices and `t` triangles
// given by `indices`, with a plane per face, and hands it to the face dispatch.
void KSP_vld_draw_captured_faces(vld_context* ctx, int32_t t, int32_t n, const uint32_t* indices,
                                 vld_vertex* vertices, bool strip)
{
    if (t < 0)
        t = 0;
    vld_dl_record r = vld_capture_head(VLD_DL_FACES, n);
    r.total_size = VLD_DL_HEAD_BYTES;
    r.face_count = t;
    r.flags = strip ? VLD_DLF_STRIP : 0;
    vld_grow(ctx->faceArray, ctx->faceCapacity, t);
    KSP_vld_face_planes(ctx->faceArray, t, indices, vertices);
    vld_dl_set_faces_address(&r, ctx->faceArray);
    vld_dl_set_vertices_address(&r, vertices);
    uint32_t mask = ctx->beginAttrMask;
    KSP_vld_capture_offsets(r, mask);
    if ((mask & VLD_ATTR_TEX0) && (mask & VLD_ATTR_TEX1))
        r.flags |= 56;
    else if (mask & VLD_ATTR_TEX0)
        r.flags |= 40;
    else if (mask & VLD_ATTR_TEX1)
        r.flags |= 48;
    KSP_vld_dl_faces(&r);
}

// The line-or-point drawer. For compile the vertices are copied behind a head in the list
// under construction; for execute a head on the stack points at them and the pipeline
// draws them with full clipping, whatever the clip-volume hint says.
void KSP_vld_draw_lines_or_points(vld_context* ctx, uint32_t type, bool compile, int64_t count,
                                  const vld_vertex* vertices)
{
    if (count < 0)
        count = 0;
    vld_dl_record head = vld_capture_head(type, (int32_t)count);
    KSP_vld_capture_offsets(head, ctx->beginAttrMask);
    if (compile) {
        uint64_t bytes = VLD_DL_HEAD_BYTES + (uint64_t)sizeof(vld_vertex) * (uint64_t)count;
        if (bytes > 0xFFFFFFFFu)
            return;
        void* item = KSP_vld_display_list_alloc((uint32_t)bytes);
        if (!item)
            return;
        head.total_size = (uint32_t)bytes;
        head.flags = VLD_DLF_VERTICES_INLINE;
        head.vertices = VLD_DL_HEAD_BYTES;
        std::memcpy(item, &head, VLD_DL_HEAD_BYTES);
        std::memcpy((char*)item + VLD_DL_HEAD_BYTES, vertices, (size_t)bytes - VLD_DL_HEAD_BYTES);
        return;
    }
    head.total_size = 0;
    head.flags = 0;
    vld_dl_set_vertices_address(&head, (void*)vertices);
    GLenum savedHint = ctx->hint.hintClipVolume;
    ctx->hint.hintClipVolume = GL_NICEST;
    if (type == VLD_DL_LINES)
        KSP_vld_dl_lines(&head, 1);
    else
        KSP_vld_dl_points(&head);
    ctx->hint.hintClipVolume = savedHint;
}

// The triangle count and the size that the index and expanded arrays need for a primitive
// of n vertices. The GL_QUADS count of n >> 1 is larger than the complete quads give for
// counts that are not multiples of four; the face drawer then draws the extra faces from
// what the index array still holds.
void KSP_vld_capture_sizes(GLenum type, int64_t n, int64_t* t, int64_t* s)
{
    switch (type) {
    case GL_POINTS:
    case GL_LINES: *t = 0; *s = n; break;
    case GL_LINE_LOOP: *t = 0; *s = 2 * n; break;
    case GL_LINE_STRIP: *t = 0; *s = 2 * n - 2; break;
    case GL_TRIANGLES: *t = n / 3; *s = n; break;
    case GL_TRIANGLE_STRIP:
    case GL_TRIANGLE_FAN:
    case GL_QUAD_STRIP: *t = n - 2; *s = 3 * (n - 2); break;
    case GL_QUADS: *t = n >> 1; *s = 3 * (n >> 1); break;
    case GL_POLYGON: *t = n - 2; *s = 3 * n - 6; break;
    default: *t = 0; *s = 0; break;
    }
}

// glBegin: starts a primitive. No test of any kind: a bad mode or a nested glBegin is
// accepted here and judged at glEnd.
void __vlddo_Begin(GLenum mode)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    ctx->beginType = mode;
    ctx->vertexCount = 0;
    ctx->inBeginEnd = 1;
    ctx->beginAttrMask = ctx->attrMaskSeed;
    vld_template_refresh(ctx);
}

// glVertex3f past vertexRoom: nothing at the capture limit; otherwise, with a full array, it
// grows by 256 zeroed records; then the vertex is captured. Kept out of line so that the
// common case saves nothing.
[[gnu::noinline]] void KSP_vld_capture_vertex_grown(vld_context* ctx, GLfloat x, GLfloat y, GLfloat z)
{
    if (ctx->vertexCount == VLD_CAPTURE_LIMIT)
        return;
    if (ctx->vertexCount >= ctx->vertexCapacity) {
        int32_t old = ctx->vertexCapacity;
        int32_t grown = ctx->vertexCount + 256;
        ctx->vertexArray =
            (vld_vertex*)KSP_vld_realloc_aligned(ctx->vertexArray, (size_t)grown * sizeof(vld_vertex));
        std::memset((void*)(ctx->vertexArray + old), 0, (size_t)(grown - old) * sizeof(vld_vertex));
        ctx->vertexCapacity = grown;
    }
    ctx->vertexRoom = ctx->vertexCapacity < VLD_CAPTURE_LIMIT ? ctx->vertexCapacity : VLD_CAPTURE_LIMIT;
    vld_capture_vertex(ctx, x, y, z);
}

// glVertex3f: captures one whole vertex (see vld_capture_vertex).
void __vlddo_Vertex3f(GLfloat x, GLfloat y, GLfloat z)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    vld_vertex3f(ctx, x, y, z);
}

// glEnd: turns the captured primitive into list content and/or a drawn record.
void __vlddo_End()
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    ctx->inBeginEnd = 0;
    ctx->vertexTemplateLive = VLD_TEMPLATE_DEAD;
    int64_t n = ctx->vertexCount;
    if (n == 0)
        return;
    GLenum type = ctx->beginType;
    if (type > GL_POLYGON) {
        std::fprintf(stderr, "glEnd: ignoring entity of type %s\n", "(unknown)");
        ctx->vertexCount = 0;
        return;
    }

    int64_t t = 0, s = n;
    KSP_vld_capture_sizes(type, n, &t, &s);
    // Both arrays hold the needed size whatever the primitive and the routing, though faces
    // and points are drawn from the captured vertices themselves: once grown, a steady
    // stream of primitives costs a compare each.
    vld_grow(ctx->indexArray, ctx->indexCapacity, s);
    vld_grow(ctx->expandedArray, ctx->expandedCapacity, s);
    if (ctx->compileFlag)
        vld_compile_primitive(ctx);
    if (!ctx->executeFlag) {
        ctx->vertexCount = 0;
        return;
    }
    if (ctx->hint.hintTexCoordReduce == GL_NICEST)
        vld_reduce_coords(ctx, n);

    switch (type) {
    case GL_LINES:
    case GL_LINE_LOOP:
    case GL_LINE_STRIP: {
        int64_t count = KSP_vld_capture_expand_lines(type, ctx->vertexArray, n, ctx->expandedArray);
        KSP_vld_draw_lines_or_points(ctx, VLD_DL_LINES, false, count, ctx->expandedArray);
        break;
    }
    case GL_POINTS:
        KSP_vld_draw_lines_or_points(ctx, VLD_DL_POINTS, false, n, ctx->vertexArray);
        break;
    default:
        KSP_vld_capture_triangle_indices(type, n, ctx->indexArray);
        KSP_vld_draw_captured_faces(ctx, (int32_t)t, (int32_t)n, ctx->indexArray, ctx->vertexArray,
                                    type == GL_TRIANGLE_STRIP);
        break;
    }
    ctx->vertexCount = 0;
}

namespace {

// Copies a caller's draw record into the list under construction, with its vertices and
// triangles behind the head, so that the list no longer depends on the caller's memory.
void vld_copy_record_into_list(vld_context* ctx, const vld_dl_record* record, uint32_t type)
{
    if (ctx->pendingFaceVertices > 0)
        KSP_vld_create_dl_faces();
    uint32_t mask = 0;
    if (record->normal_offset) mask |= VLD_ATTR_NORMAL;
    if (record->color_offset) mask |= VLD_ATTR_COLOR;
    if (record->ambient_offset) mask |= VLD_ATTR_AMBIENT;
    if (record->diffuse_offset) mask |= VLD_ATTR_DIFFUSE;
    if (record->specular_offset) mask |= VLD_ATTR_SPECULAR;
    if (record->emission_offset) mask |= VLD_ATTR_EMISSION;
    if (record->shininess_offset) mask |= VLD_ATTR_SHININESS;
    ctx->dlStaticDirty &= ~mask;
    KSP_vld_flush_update_list(511);

    uint64_t size = record->total_size < VLD_DL_HEAD_BYTES ? VLD_DL_HEAD_BYTES : record->total_size;
    uint64_t faceBytes = 0, vertexBytes = 0;
    bool facesOutside = (type == VLD_DL_FACES || type == VLD_DL_FACES_SSE) &&
                        !(record->flags & VLD_DLF_FACES_INLINE) && record->face_count > 0;
    bool verticesOutside = !(record->flags & VLD_DLF_VERTICES_INLINE) && record->vertex_count > 0;
    if (facesOutside)
        faceBytes = 28ull * (uint64_t)record->face_count;
    if (verticesOutside && record->stride > 0)
        vertexBytes = (uint64_t)record->stride * 4ull * (uint64_t)record->vertex_count;
    size += faceBytes + vertexBytes;
    if (size > 0xFFFFFFFFu)
        return;
    char* item = (char*)KSP_vld_display_list_alloc((uint32_t)size);
    if (!item)
        return;
    uint64_t inlineBytes = size - faceBytes - vertexBytes;
    std::memcpy(item, record, (size_t)inlineBytes);
    vld_dl_record* copy = (vld_dl_record*)item;
    copy->type = type;
    copy->total_size = (uint32_t)size;
    uint64_t at = inlineBytes;
    if (vertexBytes) {
        std::memcpy(item + at, vld_dl_vertices_of(record), (size_t)vertexBytes);
        copy->vertices = (uint32_t)at;
        copy->flags |= VLD_DLF_VERTICES_INLINE;
        at += vertexBytes;
    }
    if (faceBytes) {
        std::memcpy(item + at, vld_dl_faces_of(record), (size_t)faceBytes);
        copy->faces = (uint32_t)at;
        copy->flags |= VLD_DLF_FACES_INLINE;
    }
}

// The common frame of the three direct draw entries.
void vld_draw_direct(vld_dl_record* record, uint32_t type)
{
    vld_context* ctx = vldGc;
    if (!ctx || !record)
        return;
    // Drawing may leave the last colour or material of the record in the context.
    ctx->vertexTemplateLive = VLD_TEMPLATE_DEAD;
    if (ctx->compileFlag)
        vld_copy_record_into_list(ctx, record, type);
    if (!ctx->executeFlag)
        return;
    if (type == VLD_DL_FACES)
        KSP_vld_dl_faces(record);
    else if (type == VLD_DL_LINES)
        KSP_vld_dl_lines(record, 1);
    else
        KSP_vld_dl_points(record);
}

// The test of the Imm forms: a context and a record. The vertex template is dropped, as the
// draw may leave a colour or material of the record in the context.
bool vld_draw_imm_ready(void* record)
{
    vld_context* ctx = vldGc;
    if (!ctx || !record)
        return false;
    ctx->vertexTemplateLive = VLD_TEMPLATE_DEAD;
    return true;
}

} // namespace

extern "C" {

VLD_EXPORT void VLD_APIENTRY glDrawFacesVELD(void* record)
{
    vld_draw_direct((vld_dl_record*)record, VLD_DL_FACES);
}

VLD_EXPORT void VLD_APIENTRY glDrawLinesVELD(void* record)
{
    vld_draw_direct((vld_dl_record*)record, VLD_DL_LINES);
}

VLD_EXPORT void VLD_APIENTRY glDrawPointsVELD(void* record)
{
    vld_draw_direct((vld_dl_record*)record, VLD_DL_POINTS);
}

// The Imm forms go straight to the pipeline: no routing, whatever list is open.
VLD_EXPORT void VLD_APIENTRY glDrawFacesImmVELD(void* record)
{
    if (vld_draw_imm_ready(record))
        KSP_vld_dl_faces((vld_dl_record*)record);
}

VLD_EXPORT void VLD_APIENTRY glDrawLinesImmVELD(void* record)
{
    if (vld_draw_imm_ready(record))
        KSP_vld_dl_lines((vld_dl_record*)record, 1);
}

VLD_EXPORT void VLD_APIENTRY glDrawPointsImmVELD(void* record)
{
    if (vld_draw_imm_ready(record))
        KSP_vld_dl_points((vld_dl_record*)record);
}

// The toolkit's plain forms of the direct entries, reached by the toolkit inside the process.
void KSI_vld_dl_faces(void* record)
{
    vld_draw_direct((vld_dl_record*)record, VLD_DL_FACES);
}

void KSI_vld_dl_lines(void* record)
{
    vld_draw_direct((vld_dl_record*)record, VLD_DL_LINES);
}

void KSI_vld_dl_points(void* record)
{
    vld_draw_direct((vld_dl_record*)record, VLD_DL_POINTS);
}

} // extern "C"
