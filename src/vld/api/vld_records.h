// The records that travel between capture, display lists and the geometry pipeline:
// the captured vertex, the draw record head and the two forms of its triangle table.
// Their layouts are fixed to the byte: an application may build a draw record itself
// and hand it to glDrawFacesVELD, and display lists store them verbatim.
#pragma once

#include <cstddef>
#include <cstdint>

// One captured vertex: every attribute that was current when glVertex ran. 35 words;
// the word positions are the offsets that a draw record names.
struct vld_vertex {
    float position[3];  // words 0 to 2
    float normal[3];    // words 3 to 5
    float texcoord0[4]; // words 6 to 9: s, t, r, q of set 0
    float texcoord1[4]; // words 10 to 13: set 1
    float color[4];     // words 14 to 17
    float ambient[4];   // words 18 to 21
    float diffuse[4];   // words 22 to 25
    float specular[4];  // words 26 to 29
    float emission[4];  // words 30 to 33
    float shininess;    // word 34
};
static_assert(sizeof(vld_vertex) == 35 * 4, "a captured vertex is 35 words");

// Word positions of the attributes inside a captured vertex.
enum : int16_t {
    VLD_VX_POSITION = 0,
    VLD_VX_NORMAL = 3,
    VLD_VX_TEXCOORD = 6,
    VLD_VX_TEXCOORD1 = 10,
    VLD_VX_COLOR = 14,
    VLD_VX_AMBIENT = 18,
    VLD_VX_DIFFUSE = 22,
    VLD_VX_SPECULAR = 26,
    VLD_VX_EMISSION = 30,
    VLD_VX_SHININESS = 34,
    VLD_VX_STRIDE = 35,
};
static_assert(offsetof(vld_vertex, normal) == VLD_VX_NORMAL * 4);
static_assert(offsetof(vld_vertex, texcoord1) == VLD_VX_TEXCOORD1 * 4);
static_assert(offsetof(vld_vertex, emission) == VLD_VX_EMISSION * 4);
static_assert(offsetof(vld_vertex, shininess) == VLD_VX_SHININESS * 4);

// Plane form of a triangle (draw records of type 3): three vertex indices and the
// triangle's plane nx, ny, nz, d in object coordinates.
struct vld_face {
    uint32_t v[3];
    float plane[4];
};
static_assert(sizeof(vld_face) == 28, "a plane-form triangle is 28 bytes");

// Index form of a triangle (draw records of type 4, the SSE layout).
struct vld_face_index {
    uint32_t v[3];
};
static_assert(sizeof(vld_face_index) == 12, "an index-form triangle is 12 bytes");

// List opcodes of the draw records.
enum : uint32_t {
    VLD_DL_FACES = 3,     // faces, plane-form table, vertices as an array of structures
    VLD_DL_FACES_SSE = 4, // faces, index-form table, vertices transposed in blocks of four
    VLD_DL_LINES = 5,
    VLD_DL_POINTS = 6,
};

// Bits of vld_dl_record::flags.
enum : uint16_t {
    VLD_DLF_FACES_INLINE = 1,    // `faces` is a byte offset from the record's start
    VLD_DLF_VERTICES_INLINE = 2, // `vertices` is a byte offset from the record's start
    VLD_DLF_TEX0 = 8,            // the vertices carry coordinates of texture unit 0
    VLD_DLF_TEX1 = 16,           // ... of texture unit 1
    VLD_DLF_TEX_WIDE = 32,       // the sets stand four floats apart (captured layout), not two
    VLD_DLF_STRIP = 64,          // made from a triangle strip; informative only
};

// Vertex formats (vld_dl_record::format): which optimised path can draw the batch.
enum : uint16_t {
    VLD_FMT_GENERAL = 0,
    VLD_FMT_VCT = 1, // position, texture, cached colour
    VLD_FMT_VNT = 2, // position, normal, texture
    VLD_FMT_VC = 3,  // position, cached colour
    VLD_FMT_VN = 4,  // position, normal
};

// Bytes of the fixed head of a draw record, the same on every target.
inline constexpr uint32_t VLD_DL_HEAD_BYTES = 84;

// The draw record. The first 84 bytes are the fixed head, byte for byte the layout that
// lists store and applications build. `faces` and `vertices` hold either a byte offset
// from the record's start (flag bits 0 and 1) or an address. A 32-bit address fits in the
// word itself; on a 64-bit target an address does not, so a record in address form also
// carries the full addresses in `facesAddress` and `verticesAddress` behind the head, and
// the readers below take them from there. Records in offset form need only the head.
struct vld_dl_record {
    uint32_t type;
    uint32_t total_size;
    int32_t vertex_count;
    int32_t face_count;
    uint32_t faces;
    uint32_t lcache_offset;
    uint32_t vertices;
    float centre[3];
    float radius;        // the bit pattern of -1.0 means: no bounding sphere
    float scaled_radius; // written by the dispatch
    int32_t lcache_color;
    int32_t lcache_stride;
    uint32_t lcache_stamp;
    uint16_t flags;
    uint16_t format;
    int16_t stride;
    int16_t position_offset;
    int16_t normal_offset;
    int16_t texcoord_offset;
    int16_t color_offset;
    int16_t ambient_offset;
    int16_t diffuse_offset;
    int16_t emission_offset;
    int16_t specular_offset;
    int16_t shininess_offset;
#if UINTPTR_MAX > 0xFFFFFFFFu
    void* facesAddress;
    void* verticesAddress;
#endif
};
static_assert(offsetof(vld_dl_record, total_size) == 4);
static_assert(offsetof(vld_dl_record, vertex_count) == 8);
static_assert(offsetof(vld_dl_record, face_count) == 12);
static_assert(offsetof(vld_dl_record, faces) == 16);
static_assert(offsetof(vld_dl_record, lcache_offset) == 20);
static_assert(offsetof(vld_dl_record, vertices) == 24);
static_assert(offsetof(vld_dl_record, centre) == 28);
static_assert(offsetof(vld_dl_record, radius) == 40);
static_assert(offsetof(vld_dl_record, scaled_radius) == 44);
static_assert(offsetof(vld_dl_record, lcache_color) == 48);
static_assert(offsetof(vld_dl_record, lcache_stride) == 52);
static_assert(offsetof(vld_dl_record, lcache_stamp) == 56);
static_assert(offsetof(vld_dl_record, flags) == 60);
static_assert(offsetof(vld_dl_record, format) == 62);
static_assert(offsetof(vld_dl_record, stride) == 64);
static_assert(offsetof(vld_dl_record, position_offset) == 66);
static_assert(offsetof(vld_dl_record, normal_offset) == 68);
static_assert(offsetof(vld_dl_record, texcoord_offset) == 70);
static_assert(offsetof(vld_dl_record, color_offset) == 72);
static_assert(offsetof(vld_dl_record, ambient_offset) == 74);
static_assert(offsetof(vld_dl_record, diffuse_offset) == 76);
static_assert(offsetof(vld_dl_record, emission_offset) == 78);
static_assert(offsetof(vld_dl_record, specular_offset) == 80);
static_assert(offsetof(vld_dl_record, shininess_offset) == 82);
static_assert(offsetof(vld_dl_record, shininess_offset) + 2 == VLD_DL_HEAD_BYTES);

// The triangle table of a record, in either form.
inline void* vld_dl_faces_of(const vld_dl_record* r)
{
    if (r->flags & VLD_DLF_FACES_INLINE)
        return (char*)r + r->faces;
#if UINTPTR_MAX > 0xFFFFFFFFu
    return r->facesAddress;
#else
    return (void*)(uintptr_t)r->faces;
#endif
}

// The vertex array of a record, in either form.
inline float* vld_dl_vertices_of(const vld_dl_record* r)
{
    if (r->flags & VLD_DLF_VERTICES_INLINE)
        return (float*)((char*)r + r->vertices);
#if UINTPTR_MAX > 0xFFFFFFFFu
    return (float*)r->verticesAddress;
#else
    return (float*)(uintptr_t)r->vertices;
#endif
}

// Points a record at a triangle table held elsewhere.
inline void vld_dl_set_faces_address(vld_dl_record* r, void* p)
{
    r->flags &= (uint16_t)~VLD_DLF_FACES_INLINE;
    r->faces = (uint32_t)(uintptr_t)p;
#if UINTPTR_MAX > 0xFFFFFFFFu
    r->facesAddress = p;
#endif
}

// Points a record at a vertex array held elsewhere.
inline void vld_dl_set_vertices_address(vld_dl_record* r, void* p)
{
    r->flags &= (uint16_t)~VLD_DLF_VERTICES_INLINE;
    r->vertices = (uint32_t)(uintptr_t)p;
#if UINTPTR_MAX > 0xFFFFFFFFu
    r->verticesAddress = p;
#endif
}

// The exact bit pattern of -1.0f, which marks a record without a bounding sphere.
inline constexpr uint32_t VLD_NO_SPHERE_BITS = 0xBF800000u;
