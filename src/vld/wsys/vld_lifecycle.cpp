// The life of the library and of its rendering contexts: the lazy start-up, the creation of
// a context with every initial value, make-current with its hand-over of a board between
// contexts (Glide's state saved and loaded, or the board programmed from scratch), the
// destruction of a context, and the shutdown that returns the process to its first state.
#include <glide2/glide.h>

#include <cstdio>
#include <cstring>

#include "support/mt/mt.h"
#include "support/sys/sys.h"
#include "vld/api/vld_callees.h"
#include "vld/api/vld_error.h"
#include "vld/api/vld_export.h"
#include "vld/api/vld_functab.h"
#include "vld/glide/vld_device.h"
#include "vld/state/state.h"
#include "vld/state/state_light.h"
#include "vld/state/state_matrix.h"
#include "vld/wsys/vld_wsys.h"

namespace {

// The critical section that guards the count of current contexts.
constexpr int kMakeCurrentLock = 1;
constexpr int kCriticalSections = 6;

// Slots of the pipeline's scratch arrays made with a new context: the scalar arrays and the
// texture-coordinate block hold this many vertices, of which the last 100 are kept for
// vertices made by clipping; the conversion buffers of the SSE entry hold this many faces
// (28 bytes) and vertices (80 bytes).
constexpr int32_t kScratchSlots = 400;
constexpr int32_t kClipSlots = 100;
constexpr int32_t kSseFaceBytes = 28;
constexpr int32_t kSseVertexBytes = 80;
constexpr int32_t kSseTmuBytes = 32;

// The size of Glide's saved state, used when a unit has not said its own.
constexpr uint32_t kGlideStateBytes = sizeof(GrState);

// The version lines are wanted or not for the whole process: read once.
int printVersion = -1;

GI_mt_critical_section* vld_lock()
{
    return (GI_mt_critical_section*)vlddb.criticalSections[kMakeCurrentLock];
}

void vld_enter(GI_mt_critical_section* lock)
{
    if (lock)
        GI_mt_critical_section_enter(lock);
}

void vld_leave(GI_mt_critical_section* lock)
{
    if (lock)
        GI_mt_critical_section_leave(lock);
}

void vld_set4(float* to, float a, float b, float c, float d)
{
    to[0] = a;
    to[1] = b;
    to[2] = c;
    to[3] = d;
}

// A zero-filled aligned block of `bytes`.
void* vld_zeroed(size_t bytes)
{
    void* block = KSP_vld_realloc_aligned(nullptr, bytes);
    std::memset(block, 0, bytes);
    return block;
}

// Every light parameter of light i through the light module, so that its derived values
// are made as for an application's call. Lights 1 to 7 are white like light 0: the
// applications of this library rely on it.
void vld_default_light(vld_context* ctx, int i)
{
    const GLenum light = GL_LIGHT0 + (GLenum)i;
    const float ambient[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    const float white[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    const float position[4] = {0.0f, 0.0f, 1.0f, 0.0f};
    const float direction[4] = {0.0f, 0.0f, -1.0f, 0.0f};
    const float exponent = 0.0f, cutoff = 180.0f;
    const float constant = 1.0f, linear = 0.0f, quadratic = 0.0f;
    KSP_vld_glLightfv(ctx, light, GL_AMBIENT, ambient);
    KSP_vld_glLightfv(ctx, light, GL_DIFFUSE, white);
    KSP_vld_glLightfv(ctx, light, GL_SPECULAR, white);
    KSP_vld_glLightfv(ctx, light, GL_POSITION, position);
    KSP_vld_glLightfv(ctx, light, GL_SPOT_DIRECTION, direction);
    KSP_vld_glLightfv(ctx, light, GL_SPOT_EXPONENT, &exponent);
    KSP_vld_glLightfv(ctx, light, GL_SPOT_CUTOFF, &cutoff);
    KSP_vld_glLightfv(ctx, light, GL_CONSTANT_ATTENUATION, &constant);
    KSP_vld_glLightfv(ctx, light, GL_LINEAR_ATTENUATION, &linear);
    KSP_vld_glLightfv(ctx, light, GL_QUADRATIC_ATTENUATION, &quadratic);
}

// The texture units of a new context: modulate, black opaque environment colour, their GL
// unit names, eye-linear generation with the standard planes; the first unit selected.
void vld_default_texture_units(vld_context* ctx)
{
    vld_texture_attrib& t = ctx->texture;
    for (int i = 0; i < 2; ++i) {
        vld_texture_unit& u = t.units[i];
        u.textureUnitId = (int32_t)(GL_TEXTURE0_SGIS + i);
        u.envMode = GL_MODULATE;
        vld_set4(u.envColor, 0.0f, 0.0f, 0.0f, 1.0f);
        for (int c = 0; c < 4; ++c) {
            u.texGenMode[c] = GL_EYE_LINEAR;
            vld_set4(u.texGenObjectPlane[c], 0.0f, 0.0f, 0.0f, 0.0f);
        }
        u.texGenObjectPlane[0][0] = 1.0f;
        u.texGenObjectPlane[1][1] = 1.0f;
        std::memcpy(u.texGenEyePlane, u.texGenObjectPlane, sizeof u.texGenEyePlane);
        u.texgenInverseDirty = 1;
    }
    t.currentTextureUnit = &t.units[0];
    t.currentTextureUnitIndex = 0;
}

// The pipeline's scratch arrays at their first size, cleared (the eye records carry stamps
// that must not match a running batch by accident).
void vld_default_scratch(vld_context* ctx)
{
    ctx->vertexAllocated = kScratchSlots;
    ctx->pipelineVertexCapacity = kScratchSlots - kClipSlots;
    ctx->clipVertexBase = kScratchSlots - kClipSlots;
    ctx->screenVertices = vld_zeroed((size_t)kScratchSlots * VLD_SCREEN_SLOT_BYTES);
    ctx->eyeVertices = vld_zeroed((size_t)kScratchSlots * VLD_EYE_RECORD_BYTES);
    for (float*& scalars : ctx->sseScratch)
        scalars = (float*)vld_zeroed((size_t)kScratchSlots * sizeof(float));
    ctx->sseTmuBase = vld_zeroed((size_t)kScratchSlots * kSseTmuBytes);
    ctx->sseFacesCopy = vld_zeroed((size_t)kScratchSlots * kSseFaceBytes);
    ctx->sseFacesCopyCapacity = kScratchSlots;
    ctx->sseVerticesCopy = vld_zeroed((size_t)kScratchSlots * kSseVertexBytes);
    ctx->sseVerticesCopyCapacity = kScratchSlots;
}

// Every initial value of a zero-filled context, group by group.
void vld_context_defaults(vld_context* ctx)
{
    ctx->compileFlag = 0;
    ctx->executeFlag = 1;
    ctx->lastError = GL_NO_ERROR;

    ctx->swapTimeout = (double)KSP_vld_env_float("KS_ENV_VLD_SWAP_TIMEOUT", 5.0f);
    ctx->timeoutCallback = nullptr;
    ctx->attrMaskSeed = vlddb.settings.vertexPoolingOff ? 0x80000000u : 0u;

    // The raster groups first: the projection update below derives the culling sign from
    // the polygon group.
    KSP_vld_state_defaults(ctx);

    // Transform: a placeholder viewport until the board's size is known, identity stacks
    // sitting on their second slot, the depth range.
    KSP_vld_execute_glViewport(ctx, 0, 0, 16, 12);
    KSP_vld_init_matrix_state(ctx);
    KSP_vld_glDepthRange(ctx, 0.0, 1.0);

    ctx->accum.accumClear = 0.0f;

    vld_current_attrib& c = ctx->current;
    vld_set4(c.currentColor, 1.0f, 1.0f, 1.0f, 1.0f);
    c.currentNormal[0] = c.currentNormal[1] = 0.0f;
    c.currentNormal[2] = 1.0f;
    vld_set4(c.currentTexCoord[0], 0.0f, 0.0f, 0.0f, 1.0f);
    vld_set4(c.currentTexCoord[1], 0.0f, 0.0f, 0.0f, 1.0f);
    c.currentTexSet = 0;
    c.currentTexBit = 128;
    c.currentTexCoordPtr = c.currentTexCoord[0];
    vld_set4(c.rasterPos, 0.0f, 0.0f, 0.0f, 1.0f);
    c.rasterValid = 1;
    c.rasterDistance = 0.0f;
    vld_set4(c.rasterColor, 1.0f, 1.0f, 1.0f, 1.0f);

    ctx->depth.clearDepthPacked = ctx->boundUnit ? ctx->boundUnit->clearDepth : 0xFFFFu;

    KSP_vld_init_light_state(ctx);
    for (int i = 0; i < 8; ++i)
        vld_default_light(ctx, i);

    ctx->list.listBase = 0;
    ctx->pixelMode.readBuffer = GL_BACK;
    int32_t* box = ctx->scissor.scissorBox;
    box[0] = box[1] = 0;
    box[2] = 16;
    box[3] = 12;

    vld_default_texture_units(ctx);

    std::memset(ctx->transform.clipPlanes, 0, sizeof ctx->transform.clipPlanes);
    ctx->attribDepth = 0;
    ctx->pixelStore[0].alignment = 4;
    ctx->pixelStore[1].alignment = 4;
    ctx->listNesting = 0;
    ctx->renderMode = GL_RENDER;

    KSP_vld_init_dlos(ctx);
    vld_default_scratch(ctx);
    KSP_vld_polygon_cull_state(ctx);
}

// The four version lines of a new context, when the process wants them.
void vld_print_version()
{
    if (printVersion < 0)
        printVersion = KSP_vld_env_flag("KS_ENV_VLD_PRINT_VERSION", 0) ? 1 : 0;
    if (!printVersion)
        return;
    const GLenum names[4] = {GL_VENDOR, GL_RENDERER, GL_VERSION, GL_EXTENSIONS};
    const char* formats[4] = {"Veldra: GL_VENDOR = %s\n", "Veldra: GL_RENDERER = %s\n",
                              "Veldra: GL_VERSION = %s\n", "Veldra: GL_EXTENSIONS = %s\n"};
    for (int i = 0; i < 4; ++i) {
        const GLubyte* text = glGetString(names[i]);
        std::printf(formats[i], text ? (const char*)text : "");
    }
    std::fflush(stdout);
}

// Takes ctx as the one current context of the process, or refuses with a message.
int vld_acquire(vld_context* ctx)
{
    GI_mt_critical_section* lock = vld_lock();
    vld_enter(lock);
    if (vlddb.currentContexts >= 1) {
        vld_leave(lock);
        std::fprintf(stderr, "KSL_vld_ctx_make_current: only one rendering context may be current at a time\n");
        return -1;
    }
    if (ctx->currentCount >= 1) {
        vld_leave(lock);
        std::fprintf(stderr, "KSL_vld_ctx_make_current: a rendering context may only be current to a "
                             "single thread at a time\n");
        return -1;
    }
    ++vlddb.currentContexts;
    ++ctx->currentCount;
    vld_leave(lock);
    KSP_vld_ctx_set(ctx);
    return 0;
}

// Lets go of the current context: its board's Glide state is saved in the context, so that
// coming back to the same board costs one load, and the unit remembers whose state it holds.
void vld_release()
{
    vld_context* ctx = vldGc;
    if (vld_unit* unit = ctx->boundUnit) {
        uint32_t size = unit->glideStateSize < kGlideStateBytes ? kGlideStateBytes : unit->glideStateSize;
        if (ctx->savedGlideState && ctx->glideStateSize < size) {
            KSP_vld_free_aligned(ctx->savedGlideState);
            ctx->savedGlideState = nullptr;
        }
        if (!ctx->savedGlideState) {
            ctx->glideStateSize = size;
            ctx->savedGlideState = vld_zeroed(size);
        }
        // A board whose window was closed under the context (a mode change) holds no state
        // worth keeping: it is programmed afresh when it opens again.
        if (unit->windowOpen)
            grGlideGetState((GrState*)ctx->savedGlideState);
        unit->lastContext = ctx;
        unit->currentContext = nullptr;
        ctx->lastUnit = unit;
        ctx->boundUnit = nullptr;
    }
    GI_mt_critical_section* lock = vld_lock();
    vld_enter(lock);
    --vlddb.currentContexts;
    --ctx->currentCount;
    KSP_vld_ctx_set(nullptr);
    vld_leave(lock);
}

// Frees an aligned block and clears its pointer.
template <typename T>
void vld_drop(T*& block)
{
    KSP_vld_free_aligned((void*)block);
    block = nullptr;
}

void vld_unlink(vld_context* ctx)
{
    if (ctx->prevContext)
        ctx->prevContext->nextContext = ctx->nextContext;
    else
        vlddb.contextListHead = ctx->nextContext;
    if (ctx->nextContext)
        ctx->nextContext->prevContext = ctx->prevContext;
    else
        vlddb.contextListTail = ctx->prevContext;
    ctx->nextContext = ctx->prevContext = nullptr;
}

// The unit record of the default unit, or null when the default names no board (-1, or a
// number the table does not hold).
vld_unit* vld_default_unit()
{
    const int u = vlddb.defaultUnit;
    if (u < 0 || u >= VLD_MAX_UNITS)
        return nullptr;
    return &vlddb.units[u];
}

} // namespace

bool KSP_vld_context_alive(const vld_context* ctx)
{
    if (!ctx)
        return false;
    for (vld_context* c = vlddb.contextListHead; c; c = c->nextContext)
        if (c == ctx)
            return c->magic == VLD_CONTEXT_MAGIC;
    return false;
}

void KSP_vld_ctx_set(vld_context* ctx)
{
    vldGc = ctx;
}

// The one-time start-up: settings, the check of the function table, the boards, the
// texture-object tables, the SSE tables. A second thread arriving while the first is at
// work waits here until the first is done.
void KSP_vld_init_vld()
{
    if (vlddb.initialised)
        return;
    for (int i = 0; i < VLD_MAX_UNITS; ++i)
        vlddb.units[i].index = i;
    if (__atomic_add_fetch(&vlddb.initCounter, 1, __ATOMIC_SEQ_CST) >= 2) {
        __atomic_sub_fetch(&vlddb.initCounter, 1, __ATOMIC_SEQ_CST);
        while (!__atomic_load_n(&vlddb.initialised, __ATOMIC_ACQUIRE)) {
        }
        return;
    }
    for (int i = 0; i < kCriticalSections; ++i) {
        auto* section = (GI_mt_critical_section*)G_calloc(1, sizeof(GI_mt_critical_section));
        GI_mt_critical_section_init(section);
        vlddb.criticalSections[i] = section;
    }
    KSL_vld_init_from_env();
    KSP_vld_func_tab_init();
    KSP_vld_init_hw(); // without a board the library still comes up: contexts then have none
    KSP_vld_txr_obj_init();
    KSP_vld_sse_faces_init();
    KSP_vld_sse_constant_init();
    __atomic_store_n(&vlddb.initialised, 1, __ATOMIC_RELEASE);
    __atomic_sub_fetch(&vlddb.initCounter, 1, __ATOMIC_SEQ_CST);
}

int KSP_vld_context_create(vld_context** out)
{
    if (!vlddb.initialised)
        KSP_vld_init_vld();
    auto* ctx = (vld_context*)vld_zeroed(sizeof(vld_context));
    ctx->magic = VLD_CONTEXT_MAGIC;
    vld_context_defaults(ctx);

    ctx->prevContext = vlddb.contextListTail;
    if (vlddb.contextListTail)
        vlddb.contextListTail->nextContext = ctx;
    else
        vlddb.contextListHead = ctx;
    vlddb.contextListTail = ctx;

    vld_print_version();
    *out = ctx;
    return 0;
}

// The list-compile shadow of the current attributes, back to GL's initial values; a list
// opened later must set anything else it wants to record.
void KSP_vld_init_dlos(vld_context* ctx)
{
    ctx->listColorMaterial = 0;
    ctx->listColorMaterialFace = GL_FRONT_AND_BACK;
    ctx->listColorMaterialMode = GL_AMBIENT_AND_DIFFUSE;
    ctx->listNormal[0] = ctx->listNormal[1] = 0.0f;
    ctx->listNormal[2] = 1.0f;
    vld_set4(ctx->listTexCoord[0], 0.0f, 0.0f, 0.0f, 1.0f);
    vld_set4(ctx->listTexCoord[1], 0.0f, 0.0f, 0.0f, 1.0f);
    ctx->listTexSet = 0;
    ctx->listTexBit = 128;
    ctx->listTexCoordPtr = ctx->listTexCoord[0];
    vld_set4(ctx->listColor, 1.0f, 1.0f, 1.0f, 1.0f);
    vld_set4(ctx->listAmbient, 0.2f, 0.2f, 0.2f, 1.0f);
    vld_set4(ctx->listDiffuse, 0.8f, 0.8f, 0.8f, 1.0f);
    vld_set4(ctx->listSpecular, 0.0f, 0.0f, 0.0f, 1.0f);
    vld_set4(ctx->listEmission, 0.0f, 0.0f, 0.0f, 1.0f);
    ctx->listShininess = 0.0f;
}

// Makes ctx current (null: none). The same context on the same board costs one comparison.
// Otherwise the current one is released and ctx taken; its unit is opened on first use,
// selected in Glide when another board was selected, and given ctx's state: programmed from
// scratch right after the opening or when the board last carried another context's state
// that ctx never saved here, else loaded from ctx's saved Glide state.
int KSP_vld_context_make_current(vld_context* ctx)
{
    if (ctx) {
        if (ctx != vldGc && !KSP_vld_context_alive(ctx))
            return -1;
        if (!ctx->unitExplicit && !ctx->chosenUnit)
            ctx->chosenUnit = vld_default_unit();
    }
    if (vldGc) {
        if (vldGc == ctx && ctx->boundUnit == ctx->chosenUnit)
            return 0;
        vld_release();
    }
    if (!ctx)
        return 0;
    if (vld_acquire(ctx) != 0)
        return -1;

    vld_unit* unit = ctx->chosenUnit;
    if (!unit)
        return 0;
    if (!unit->opened) {
        auto* record = (vld_dc_record*)ctx->dcRecord;
        unit->window = record ? (void*)record->window : nullptr;
        if (KSP_vld_unit_init(unit->index) != 0)
            return -1;
    }
    ctx->boundUnit = unit;
    unit->currentContext = ctx;
    if (vlddb.currentUnit != unit) {
        vlddb.currentUnit = unit;
        grSstSelect(unit->index);
    }
    if (unit->needStateInit) {
        KSP_vld_context_init_hw();
        unit->needStateInit = 0;
    } else if (unit->lastContext != ctx || ctx->lastUnit != unit) {
        if (ctx->lastUnit == unit && ctx->savedGlideState)
            grGlideSetState((const GrState*)ctx->savedGlideState);
        else
            KSP_vld_context_init_hw();
    }
    if (unit->rebindTextures) {
        vld_texture_unit* t = ctx->texture.currentTextureUnit;
        if (t && t->boundObject) {
            KSP_vld_tex_bind(GL_TEXTURE_2D, t->boundObject);
            if (t->boundNameDetail)
                KSP_vld_tex_bind(GL_DETAIL_TEXTURE_2D_SGIS, t->boundObject);
            unit->rebindTextures = 0;
        }
    }
    return 0;
}

// Programmes the board of the current context from nothing: the board's size as viewport
// and scissor, both colour buffers cleared, the context's raster state, a plain
// iterated-colour combine, and the textures bound again.
void KSP_vld_context_init_hw()
{
    vld_context* ctx = vldGc;
    if (!ctx || !ctx->boundUnit)
        return;
    vld_unit* unit = ctx->boundUnit;

    ctx->depth.clearDepthPacked = unit->clearDepth;
    if (unit->colorBuffers < 2)
        ctx->color.drawBuffer = GL_FRONT;

    KSP_vld_execute_glViewport(ctx, 0, 0, unit->width, unit->height);
    int32_t* box = ctx->scissor.scissorBox;
    box[0] = box[1] = 0;
    box[2] = unit->width;
    box[3] = unit->height;
    const vld_viewport_attrib& v = ctx->viewport;
    KSP_vld_execute_glScissor(v.viewportX, v.viewportY, v.viewportWidth, v.viewportHeight);
    KSP_vld_update_depth_state();

    grColorMask(FXTRUE, unit->alphaBuffer ? FXTRUE : FXFALSE);
    if (unit->depthBuffer)
        grDepthMask(FXTRUE);
    grRenderBuffer(GR_BUFFER_FRONTBUFFER);
    grBufferClear(0, 0, unit->clearDepth);
    grRenderBuffer(GR_BUFFER_BACKBUFFER);
    grBufferClear(0, 0, unit->clearDepth);
    if (unit->depthBuffer && !ctx->depth.depthWriteMask)
        grDepthMask(FXFALSE);

    __vldim_DrawBuffer(ctx->color.drawBuffer);

    KSP_vld_polygon_cull_state(ctx);
    KSP_vld_update_AlphaFunc();
    KSP_vld_update_BlendFunc();
    ctx->fog.fogTableDirty = 1;
    ctx->fog.fogColorDirty = 1;
    KSP_vld_update_fog_state(ctx);

    grConstantColorValue(0xFFFFFFFFu);
    grColorCombine(GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_ZERO, GR_COMBINE_LOCAL_ITERATED,
                   GR_COMBINE_OTHER_CONSTANT, FXFALSE);
    grAlphaCombine(GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_ZERO, GR_COMBINE_LOCAL_ITERATED,
                   GR_COMBINE_OTHER_CONSTANT, FXFALSE);

    KSP_vld_reset_glide_textures(unit->index);
    const vld_texture_unit* t = ctx->texture.currentTextureUnit;
    __vldim_BindTexture(GL_TEXTURE_2D, t ? t->boundName : 0);
    __vldim_BindTexture(GL_DETAIL_TEXTURE_2D_SGIS, t ? t->boundNameDetail : 0);
    unit->rebindTextures = 0;
}

int KSP_vld_context_destroy(vld_context* ctx)
{
    if (!KSP_vld_context_alive(ctx))
        return -1;
    if (ctx == vldGc)
        KSP_vld_context_make_current(nullptr);
    for (vld_unit& unit : vlddb.units) {
        if (unit.currentContext == ctx)
            unit.currentContext = nullptr;
        if (unit.lastContext == ctx)
            unit.lastContext = nullptr;
    }

    vld_drop(ctx->savedGlideState);
    ctx->glideStateSize = 0;
    vld_drop(ctx->dlVertices);
    ctx->dlVertexCapacity = 0;
    vld_drop(ctx->dlIndices);
    ctx->dlIndexCapacity = 0;
    vld_drop(ctx->vertexArray);
    ctx->vertexCapacity = ctx->vertexRoom = ctx->vertexSteady = 0;
    vld_drop(ctx->screenVertices);
    vld_drop(ctx->eyeVertices);
    ctx->vertexAllocated = ctx->pipelineVertexCapacity = 0;
    vld_drop(ctx->faceArray);
    ctx->faceCapacity = 0;
    vld_drop(ctx->indexArray);
    ctx->indexCapacity = 0;
    vld_drop(ctx->expandedArray);
    ctx->expandedCapacity = 0;
    for (float*& scalars : ctx->sseScratch)
        vld_drop(scalars);
    vld_drop(ctx->sseTmuBase);
    vld_drop(ctx->sseFacesCopy);
    ctx->sseFacesCopyCapacity = 0;
    vld_drop(ctx->sseVerticesCopy);
    ctx->sseVerticesCopyCapacity = 0;

    ctx->magic = 0;
    vld_unlink(ctx);
    KSP_vld_free_aligned(ctx);
    return 0;
}

// Makes some context current on unit (null: on no unit): the one the unit carries or last
// carried, else the first in the list that chose it, else a new one.
int KSP_vld_context_sst_default(vld_unit* unit)
{
    vld_context* found = nullptr;
    if (unit) {
        found = unit->currentContext;
        if (!found || found->chosenUnit != unit)
            found = unit->lastContext;
    }
    if (!found || found->chosenUnit != unit) {
        found = nullptr;
        for (vld_context* c = vlddb.contextListHead; c; c = c->nextContext)
            if (c->chosenUnit == unit) {
                found = c;
                break;
            }
    }
    if (!found) {
        if (KSP_vld_context_create(&found) != 0)
            return -1;
        found->chosenUnit = unit;
    }
    found->unitExplicit = 1;
    return KSP_vld_context_make_current(found);
}

// Stops everything in the order the stores depend on one another; vlddb ends zero-filled,
// so that the next call that needs the library starts it afresh.
void KSP_vld_shutdown()
{
    while (vlddb.contextListHead)
        KSP_vld_context_destroy(vlddb.contextListHead);
    KSP_vld_list_shutdown();
    KSP_vld_free_aligned(vlddb.readBackScratch);
    vlddb.readBackScratch = nullptr;
    vlddb.readBackScratchSize = 0;
    KSP_vld_txr_obj_shutdown();
    KSP_vld_txr_mem_shutdown();
    for (vld_unit& unit : vlddb.units) {
        // A board still showing our picture is closed before Glide goes down, unless the
        // hosting toolkit keeps Glide for itself.
        if (unit.windowOpen && !vlddb.glideShutdownDisabled) {
            if (vlddb.currentUnit != &unit) {
                vlddb.currentUnit = &unit;
                grSstSelect(unit.index);
            }
            KSP_vld_WinClose(&unit);
        }
        unit.opened = 0;
        unit.passthruInitialised = 0;
    }
    if (!vlddb.glideShutdownDisabled && vlddb.glideInitialised) {
        grGlideShutdown();
        vlddb.glideInitialised = 0;
    }
    KSP_vld_ctx_set(nullptr);
    while (vlddb.dcListHead)
        KSP_vld_free_hdc((vld_dc_record*)vlddb.dcListHead);
    for (void*& section : vlddb.criticalSections) {
        if (!section)
            continue;
        GI_mt_critical_section_delete((GI_mt_critical_section*)section);
        G_free(section);
        section = nullptr;
    }
    KSP_vld_error_summary();
    KSP_vld_error_reset();
    std::memset((void*)&vlddb, 0, sizeof vlddb);
}

void KSI_vld_hdl_shutdown()
{
    KSP_vld_shutdown();
}

extern "C" {

VLD_EXPORT void VLD_APIENTRY glShutdownVELD(void)
{
    KSP_vld_shutdown();
}

// The start for a hosting toolkit: one context, current, on no board until the toolkit
// chooses one with KSI_vld_set_unit.
VLD_EXPORT int VLD_APIENTRY KSI_vld_init(void)
{
    vlddb.hosted = 1;
    KSP_vld_init_vld();
    vld_context* ctx = nullptr;
    if (KSP_vld_context_create(&ctx) != 0)
        return -1;
    ctx->unitExplicit = 1;
    ctx->chosenUnit = nullptr;
    return KSP_vld_context_make_current(ctx);
}

} // extern "C"
