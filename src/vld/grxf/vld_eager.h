// The one-pass vertex stage of unlit, untextured batches, four vertices at a time: one body
// for every vector unit, parametrised by the unit's form of the double transform and of the
// screen stores. Read after vld/grxf/vldfacex.h, whose records and helpers it uses. Built once with
// SSE2 (vld_faces.cpp) and once for AVX2 (vld_faces_avx2.cpp, which reads this file after
// switching the target, so that everything here is built for its unit, and uses it where its
// own eight-wide pass does not apply); every function here has internal linkage, so the two
// builds never stand in for each other.
#pragma once

#if defined(__SSE2__)

namespace {

// The vertex work of an unlit, untextured batch for its first `count` vertices, in one pass:
// transform and outcode, the colour (the vertex's own, or the current colour converted once),
// and the projection of those inside the volume. The results are those the lazy route gives
// a vertex; a vertex that no face reaches only fills its scratch slots, which nothing reads.
// The current colour is left to the caller. With `trackAttr` the attribute stamps are left
// unset, so that the faces can tell which vertex they reach first; without it they are set
// here. `Form` is the vector unit's part: its call operator gives a position's clip
// coordinates (x, y, z, w) as floats (z only needed when not `Persp`), its static screen()
// writes a vertex's screen fields.
template <bool Clip, bool Persp, class Form>
void vld_eager_pass(const vld_eager_batch& b)
{
    vld_context* const ctx = b.ctx;
    const vld_face_bounds& bounds = b.bounds;
    const float* const vertices = b.vertices;
    const int stride = b.stride, count = b.count, position = b.position, colorOffset = b.colorOffset;
    const bool trackAttr = b.trackAttr;
    const uint16_t stamp = vertexStamp;
    GrVertex batchColor;
    vld_face_color4(ctx->current.currentColor, batchColor);
    char* const eyeBase = (char*)ctx->eyeVertices;
    char* const screenBase = (char*)ctx->screenVertices;
    // The matrix terms in the form's own layout, four lanes of float for what follows:
    // every lane does the operations of the scalar form in the same order.
    const Form transform(*b.fm);
    const __m128 half = _mm_setr_ps(ctx->viewport.viewportHalfWidth, ctx->viewport.viewportHalfHeight, 0.0f, 0.0f);
    const __m128 centre = _mm_setr_ps(ctx->viewport.viewportCenterX, ctx->viewport.viewportCenterY, 0.0f, 0.0f);
    const __m128 bias = _mm_set1_ps(524288.0f);
    const __m128 sign = _mm_set1_ps(-0.0f);
    const float depthScale = ctx->depthScale, depthOffset = ctx->depthOffset;
    // The outcode from two compare masks over (x, y, d): the lower bounds (-w, -w, near)
    // and the upper ones (w, w, far), an upper bit only where its lower one is clear.
    const __m128 nearV = _mm_set1_ps(bounds.nearDepth), farV = _mm_set1_ps(bounds.farDepth);
    const bool perspective = bounds.perspective;
    // The four stamps of an eye record in one store: the outcode, the transform stamp,
    // the attribute stamp (taken when the faces do not track it) and the projection stamp
    // (a stale one unless the vertex is projected here).
    const uint64_t attrStamp = trackAttr ? (uint16_t)(stamp - 1) : stamp;
    const uint64_t stampsInside = (uint64_t)stamp << 16 | attrStamp << 32 | (uint64_t)stamp << 48;
    const uint64_t stampsOutside = (uint64_t)stamp << 16 | attrStamp << 32 | (uint64_t)(uint16_t)(stamp - 1) << 48;
    int i = 0;
    // Four vertices at a time: each transformed as below, then their outcodes, stamps and
    // projections side by side in the lanes, every lane doing what the loop below does.
    const __m128 halfX = _mm_set1_ps(ctx->viewport.viewportHalfWidth);
    const __m128 halfY = _mm_set1_ps(ctx->viewport.viewportHalfHeight);
    const __m128 centreX = _mm_set1_ps(ctx->viewport.viewportCenterX);
    const __m128 centreY = _mm_set1_ps(ctx->viewport.viewportCenterY);
    const __m128 scale4 = _mm_set1_ps(depthScale), offset4 = _mm_set1_ps(depthOffset);
    const __m128 one = _mm_set1_ps(1.0f);
    const __m128i stampLow = _mm_set1_epi32((int)((uint32_t)stamp << 16));
    const __m128i highInside = _mm_set1_epi32((int)(uint32_t)(stampsInside >> 32));
    const __m128i highOutside = _mm_set1_epi32((int)(uint32_t)(stampsOutside >> 32));
    const __m128 batchColor4 = vld_face_color4v(ctx->current.currentColor);
    const size_t stampsAt = offsetof(vld_eye_vertex, outcode);
    // Clip coordinates of vertex i + k, into its eye record (z only when not perspective).
    auto eye = [&](int k) __attribute__((always_inline)) {
        const __m128 c = transform(vertices + (size_t)(i + k) * stride + position);
        float* e = (float*)(eyeBase + (size_t)(i + k) * VLD_EYE_RECORD_BYTES);
        if (!Persp) {
            _mm_storeu_ps(e, c);
        } else {
            _mm_storel_pi((__m64*)e, c);
            _mm_store_ss(e + 3, _mm_shuffle_ps(c, c, 0xFF));
        }
        return c;
    };
    for (; i + 4 <= count; i += 4) {
        __m128 X = eye(0), Y = eye(1), Z = eye(2), W = eye(3);
        _MM_TRANSPOSE4_PS(X, Y, Z, W);
        __m128i code = _mm_setzero_si128();
        if (Clip) {
            const __m128 D = perspective ? W : Z;
            const __m128 negW = _mm_xor_ps(W, sign);
            const __m128 left = _mm_cmplt_ps(X, negW);
            const __m128 bottom = _mm_cmplt_ps(Y, negW);
            const __m128 nearOut = _mm_cmplt_ps(D, nearV);
            const __m128 right = _mm_andnot_ps(left, _mm_cmpgt_ps(X, W));
            const __m128 top = _mm_andnot_ps(bottom, _mm_cmpgt_ps(Y, W));
            const __m128 farOut = _mm_andnot_ps(nearOut, _mm_cmpgt_ps(D, farV));
            auto bit = [](__m128 mask, int value) {
                return _mm_and_si128(_mm_castps_si128(mask), _mm_set1_epi32(value));
            };
            code = _mm_or_si128(_mm_or_si128(_mm_or_si128(bit(left, VLD_CLIP_LEFT), bit(right, VLD_CLIP_RIGHT)),
                                             _mm_or_si128(bit(bottom, VLD_CLIP_BOTTOM), bit(top, VLD_CLIP_TOP))),
                                _mm_or_si128(bit(nearOut, VLD_CLIP_NEAR), bit(farOut, VLD_CLIP_FAR)));
        }
        const __m128i inside = _mm_cmpeq_epi32(code, _mm_setzero_si128());
        const __m128i low = _mm_or_si128(code, stampLow);
        const __m128i high = _mm_or_si128(_mm_and_si128(inside, highInside), _mm_andnot_si128(inside, highOutside));
        const __m128i stamps01 = _mm_unpacklo_epi32(low, high), stamps23 = _mm_unpackhi_epi32(low, high);
        char* const eye0 = eyeBase + (size_t)i * VLD_EYE_RECORD_BYTES + stampsAt;
        _mm_storel_epi64((__m128i*)eye0, stamps01);
        _mm_storeh_pd((double*)(eye0 + VLD_EYE_RECORD_BYTES), _mm_castsi128_pd(stamps01));
        _mm_storel_epi64((__m128i*)(eye0 + 2 * VLD_EYE_RECORD_BYTES), stamps23);
        _mm_storeh_pd((double*)(eye0 + 3 * VLD_EYE_RECORD_BYTES), _mm_castsi128_pd(stamps23));
        __m128 sx = _mm_mul_ps(halfX, X), sy = _mm_mul_ps(halfY, Y);
        if (Persp) {
            const __m128 rhw = _mm_div_ps(one, W);
            sx = _mm_mul_ps(sx, rhw);
            sy = _mm_mul_ps(sy, rhw);
        }
        sx = _mm_add_ps(_mm_add_ps(sx, centreX), bias);
        sy = _mm_add_ps(_mm_add_ps(sy, centreY), bias);
        const __m128 oow = _mm_div_ps(one, _mm_add_ps(_mm_mul_ps(scale4, Persp ? W : Z), offset4));
        const __m128 xy01 = _mm_unpacklo_ps(sx, sy), xy23 = _mm_unpackhi_ps(sx, sy);
        const int insideMask = _mm_movemask_ps(_mm_castsi128_ps(inside));
        // Vertex i + k into its screen slot (see the form's screen): `xy` holds its x and y in
        // the low half (high false) or the high one, `o` its 1/w in the low lane.
        auto screen = [&](int k, __m128 xy, bool high, __m128 o) __attribute__((always_inline)) {
            GrVertex& s = *(GrVertex*)(screenBase + (size_t)(i + k) * VLD_SCREEN_SLOT_BYTES);
            const __m128 colour = colorOffset > 0 ? vld_face_color4v(vertices + (size_t)(i + k) * stride + colorOffset)
                                                  : batchColor4;
            Form::screen(s, colour, xy, high, o, (insideMask >> k & 1) != 0);
        };
        screen(0, xy01, false, oow);
        screen(1, xy01, true, _mm_shuffle_ps(oow, oow, 0x55));
        screen(2, xy23, false, _mm_movehl_ps(oow, oow));
        screen(3, xy23, true, _mm_shuffle_ps(oow, oow, 0xFF));
    }
    for (; i < count; ++i) {
        char* const eyeSlot = eyeBase + (size_t)i * VLD_EYE_RECORD_BYTES;
        GrVertex& s = *(GrVertex*)(screenBase + (size_t)i * VLD_SCREEN_SLOT_BYTES);
        const float* vertex = vertices + (size_t)i * stride;
        const __m128 c = transform(vertex + position);
        const __m128 w = _mm_shuffle_ps(c, c, 0xFF);
        if (!Persp) {
            _mm_storeu_ps((float*)eyeSlot, c);
        } else {
            _mm_storel_pi((__m64*)eyeSlot, c);
            _mm_store_ss((float*)eyeSlot + 3, w);
        }
        // (x, y, d, d) with d the depth that the near and far bounds apply to.
        const __m128 depth = perspective ? w : _mm_shuffle_ps(c, c, 0xAA);
        uint32_t code = 0;
        if (Clip) {
            const __m128 v = _mm_movelh_ps(c, depth);
            const int low = _mm_movemask_ps(_mm_cmplt_ps(v, _mm_movelh_ps(_mm_xor_ps(w, sign), nearV))) & 7;
            const int high = _mm_movemask_ps(_mm_cmpgt_ps(v, _mm_movelh_ps(w, farV))) & 7 & ~low;
            code = kFaceLowCodes[low] | kFaceHighCodes[high];
        }
        const uint64_t stamps = (code == 0 ? stampsInside : stampsOutside) | code;
        std::memcpy(eyeSlot + offsetof(vld_eye_vertex, outcode), &stamps, sizeof stamps);
        vld_face_take_color(vertex, colorOffset, batchColor, s);
        if (code == 0) {
            __m128 q = _mm_mul_ps(half, c);
            if (Persp)
                q = _mm_mul_ps(q, _mm_div_ps(_mm_set1_ps(1.0f), w));
            q = _mm_add_ps(_mm_add_ps(q, centre), bias);
            const float d = Persp ? _mm_cvtss_f32(w) : _mm_cvtss_f32(_mm_movehl_ps(c, c));
            s.oow = 1.0f / (depthScale * d + depthOffset);
            _mm_storel_pi((__m64*)&s.x, q);
        }
    }
}

// The four variants of a form, by clipping and projection.
template <class Form>
void vld_eager_dispatch(const vld_eager_batch& b, bool clip, bool persp)
{
    if (clip)
        persp ? vld_eager_pass<true, true, Form>(b) : vld_eager_pass<true, false, Form>(b);
    else
        persp ? vld_eager_pass<false, true, Form>(b) : vld_eager_pass<false, false, Form>(b);
}

} // namespace

#endif
