// The rendering context, the process-wide record `vlddb` and the unit record.
//
// All GL state lives in these plain records; any module reads and writes their fields
// directly through `vldGc` and `vlddb`. The attribute groups of the context stand in the
// order of the attribute stack, and each is one trivially copyable struct, so that
// glPushAttrib and glPopAttrib copy a group with one assignment. Groups whose fields
// belong to a later subsystem are laid out here at their full size; that subsystem names
// the words it uses inside its own group.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "vld/api/vld_export.h"
#include "vld/api/vld_gl.h"
#include "vld/api/vld_records.h"

// A float stored in four equal lanes, 16-byte aligned, for the four-wide code.
struct alignas(16) vld_group4 {
    float lane[4];
};

// ---------------------------------------------------------------------------------------
// Attribute groups, in the order of the attribute stack.

// GL_ACCUM_BUFFER_BIT.
struct vld_accum_attrib {
    float accumClear;
};

// GL_COLOR_BUFFER_BIT.
struct vld_color_attrib {
    GLenum alphaFunc;
    float alphaRef;
    GLenum blendSrc;
    GLenum blendDst;
    GLenum drawBuffer;
    float clearColor[4];
    uint8_t colorMask[4];
    float clearIndex;
    uint32_t dither;
};

// GL_CURRENT_BIT: the current attributes of the immediate layer.
struct vld_current_attrib {
    float currentColor[4];
    float currentNormal[3];
    float currentTexCoord[2][4];
    int32_t currentTexSet;
    uint32_t currentTexBit; // 128 for set 0, 256 for set 1: its bit of beginAttrMask
    float* currentTexCoordPtr;
    float rasterPos[4];
    uint32_t rasterValid;
    float rasterDistance;
    float rasterColor[4];
};

// GL_DEPTH_BUFFER_BIT.
struct vld_depth_attrib {
    GLenum depthFunc;
    double clearDepth;
    uint32_t depthWriteMask;
    uint32_t clearDepthPacked; // the clear value as the board's 16-bit depth
    uint32_t depthWords;
};

// The capability words: saved on every push, whatever the mask.
struct vld_enable_attrib {
    uint32_t capabilityBits;
    uint32_t lightEnableBits;
    uint32_t textureEnableBits[2];
    uint32_t* currentTextureEnable;
    int32_t textureEnableIndex;
    uint16_t evalEnable[2]; // the evaluator's two enable fields (GL_EVAL_BIT restores them)
};

// GL_EVAL_BIT.
struct vld_eval_attrib {
    uint32_t evalWord;
};

// GL_FOG_BIT.
struct vld_fog_attrib {
    GLenum fogMode;
    float fogDensity;
    float fogStart;
    float fogEnd;
    float fogColor[4];
    float fogIndex;
    uint32_t fogTableDirty;
    uint32_t fogColorDirty;
};

// GL_HINT_BIT: every hint starts as GL_DONT_CARE.
struct vld_hint_attrib {
    GLenum hintPerspectiveCorrection;
    GLenum hintPointSmooth;
    GLenum hintLineSmooth;
    GLenum hintPolygonSmooth;
    GLenum hintFog;
    GLenum hintClipVolume;     // GL_CLIP_VOLUME_CLIPPING_HINT_EXT
    GLenum hintTexCoordReduce; // the library's coordinate-reduction hint
};

// GL_LINE_BIT.
struct vld_line_attrib {
    float lineWidth;
    uint32_t lineStipplePattern;
    int32_t lineStippleFactor;
    uint32_t smoothLineActive;  // GL_LINE_SMOOTH on and allowed: what the line code tests
    uint32_t smoothLineAllowed; // cleared by glMinimizeVELD(GL_LINE_SMOOTH, OFF)
};

// GL_LIST_BIT.
struct vld_list_attrib {
    GLuint listBase;
};

// GL_PIXEL_MODE_BIT.
struct vld_pixel_mode_attrib {
    GLenum readBuffer;
};

// GL_POINT_BIT.
struct vld_point_attrib {
    float pointSize;
    uint32_t smoothPointActive;
    uint32_t smoothPointAllowed;
};

// GL_POLYGON_BIT.
struct vld_polygon_attrib {
    GLenum polygonModeFront;
    GLenum polygonModeBack;
    GLenum frontFace;
    GLenum cullFaceMode;
    float polygonOffsetFactor;
    float polygonOffsetUnits;
    float frontSign; // +1 culls faces of positive area, -1 negative, 0 all (front and back)
    float cullSign;  // frontSign times the modelview's mirrorSign: what the face path tests
    uint32_t smoothPolygonActive;
    uint32_t smoothPolygonAllowed;
};

// GL_POLYGON_STIPPLE_BIT.
struct vld_polygon_stipple_attrib {
    uint32_t stippleWord;
};

// GL_SCISSOR_BIT.
struct vld_scissor_attrib {
    int32_t scissorBox[4];
};

// GL_STENCIL_BUFFER_BIT.
struct vld_stencil_attrib {
    GLenum stencilFunc;
    int32_t stencilRef;
    uint32_t stencilValueMask;
    uint32_t stencilWriteMask;
    GLenum stencilFail;
    GLenum stencilDepthFail;
    GLenum stencilDepthPass;
    int32_t clearStencil;
};

// GL_TRANSFORM_BIT.
struct vld_transform_attrib {
    GLenum matrixMode;
    uint32_t normalize;
    uint32_t clipPlaneEnable;
    float clipPlanes[7][4];
};

// GL_VIEWPORT_BIT.
struct vld_viewport_attrib {
    int32_t viewportX, viewportY, viewportWidth, viewportHeight;
    float viewportCenterX, viewportCenterY;
    float viewportHalfWidth, viewportHalfHeight;
    float viewportInvWidth, viewportInvHeight;
    float depthRangeNear, depthRangeFar;
    float depthRangeHalfExtent, depthRangeCenter;
    float viewportWords[2];
};

// One light source: 108 words, holding its own GL name (GL_LIGHT0 + i).
struct vld_light {
    GLenum name;
    float ambient[4];
    float diffuse[4];
    float specular[4];
    float position[4];      // in eye coordinates, as given
    float spotDirection[4]; // in eye coordinates, as given
    float spotExponent;
    float spotCutoff;
    float attenuation[3]; // constant, linear, quadratic
    float derived[82];    // object-space geometry and broadcast copies of the lighting paths
};
static_assert(sizeof(vld_light) == 108 * 4, "a light record is 108 words");

// Material times light, per light, with the broadcast copies for the four-wide lighting.
struct vld_light_products {
    float ambient[3];
    float diffuse[4]; // r, g, b products, then the material's diffuse alpha
    float specular[3];
    float specularFlag; // non-zero when a specular product is non-zero
    float pad[1];
    vld_group4 ambient4[3];
    vld_group4 diffuse4[4];
    vld_group4 specular4[3];
};

// GL_LIGHTING_BIT: light model, the one material, colour material, lights and their products.
struct vld_lighting_attrib {
    float lightModelAmbient[4];
    uint8_t lightModelLocalViewer;
    uint8_t lightModelOneSided;
    uint8_t lightModelPad[2];
    int32_t lightHighestEnabled;
    uint32_t lightChangeCount;
    GLenum shadeModel;
    GLenum colorMaterialMode;
    GLenum colorMaterialFace;
    float materialAmbient[4];
    float materialDiffuse[4];
    float materialSpecular[4];
    float materialEmission[4];
    float materialShininess;
    float materialShininessBase;
    float materialPad[2];
    vld_group4 materialEmission4[4];
    vld_group4 materialShininessBase4;
    float sceneAmbient[4]; // material ambient times model ambient, r, g, b
    vld_group4 sceneAmbient4[3];
    vld_light_products lightProducts[8];
    vld_light lights[8];
    float lightingWords[720];
};

// A texture unit of the context: binding, environment and generation of one GL unit.
struct vld_texture_unit {
    int32_t textureUnitId; // the GL unit this record stands for
    GLuint boundName;
    void* boundObject;
    GLenum envMode;
    float envColor[4];
    GLenum texGenMode[4];
    float texGenObjectPlane[4][4];
    float texGenEyePlane[4][4];
    uint32_t texgenInverseDirty;
    GLuint boundName1D;     // the GL_TEXTURE_1D binding (never reaches the board)
    GLuint boundNameDetail; // the GL_DETAIL_TEXTURE_2D_SGIS binding
    float unitWords[298];
};

// GL_TEXTURE_BIT.
struct vld_texture_attrib {
    uint32_t setEnable[2];
    vld_texture_unit* currentTextureUnit;
    int32_t currentTextureUnitIndex;
    vld_texture_unit units[2];
};

// The attribute groups that one stack entry saves, in stack order.
#define VLD_ATTRIB_GROUPS(X)                                                                   \
    X(vld_accum_attrib, accum)                                                                 \
    X(vld_color_attrib, color)                                                                 \
    X(vld_current_attrib, current)                                                             \
    X(vld_depth_attrib, depth)                                                                 \
    X(vld_enable_attrib, enable)                                                               \
    X(vld_eval_attrib, eval)                                                                   \
    X(vld_fog_attrib, fog)                                                                     \
    X(vld_hint_attrib, hint)                                                                   \
    X(vld_line_attrib, line)                                                                   \
    X(vld_list_attrib, list)                                                                   \
    X(vld_pixel_mode_attrib, pixelMode)                                                        \
    X(vld_point_attrib, point)                                                                 \
    X(vld_polygon_attrib, polygon)                                                             \
    X(vld_polygon_stipple_attrib, polygonStipple)                                              \
    X(vld_scissor_attrib, scissor)                                                             \
    X(vld_stencil_attrib, stencil)                                                             \
    X(vld_transform_attrib, transform)                                                         \
    X(vld_viewport_attrib, viewport)                                                           \
    X(vld_lighting_attrib, lighting)                                                           \
    X(vld_texture_attrib, texture)

#define VLD_CHECK_GROUP(Type, name)                                                            \
    static_assert(std::is_trivially_copyable_v<Type>, #Type " must copy as a block");
VLD_ATTRIB_GROUPS(VLD_CHECK_GROUP)
#undef VLD_CHECK_GROUP

// One entry of the attribute stack: the mask of the push and a copy of every group.
struct vld_attrib_entry {
    GLbitfield mask;
#define VLD_ENTRY_FIELD(Type, name) Type name;
    VLD_ATTRIB_GROUPS(VLD_ENTRY_FIELD)
#undef VLD_ENTRY_FIELD
};

// ---------------------------------------------------------------------------------------
// Groups outside the attribute stack.

// Pixel-store state, packing then unpacking.
struct vld_pixel_store {
    int32_t alignment;
    int32_t rowLength;
    int32_t skipPixels;
    int32_t skipRows;
    int32_t swapBytes;
    int32_t lsbFirst;
};

// A 64-bit count kept as two words.
struct vld_int64 {
    uint32_t low;
    uint32_t high;
};

// A texture transform set: a two-deep stack with an identity flag per matrix.
struct vld_texture_transform {
    float matrices[2][16];
    int32_t isIdentity[2];
    int32_t depth;
};

struct vld_unit;

// The attributes that the next captured vertex takes, in the order and at the alignment of
// words 2 to 34 of a vertex record, so that glVertex copies them as aligned blocks: each
// block here is written by the setter of its attribute as one store, and read back as one
// load. `lead` holds the normal in lanes 1 to 3; lane 0 stands where the record's z goes.
struct alignas(16) vld_vertex_template {
    float lead[4];
    float texcoord0[4];
    float texcoord1[4];
    float color[4];
    float ambient[4];
    float diffuse[4];
    float specular[4];
    float emission[4];
    float shininess;
    float pad[3];
};

// The rendering context. Zero-filled at creation and aligned to 16 bytes.
struct vld_context {
    // Identity.
    uint32_t magic; // VLD_CONTEXT_MAGIC while alive, 0 once destroyed
    int32_t currentCount;
    vld_context* nextContext;
    vld_context* prevContext;

    // Unit binding.
    int32_t unitExplicit;
    vld_unit* chosenUnit;
    vld_unit* boundUnit;
    vld_unit* lastUnit;

    // The attribute stack, then the live groups in the same order.
    int32_t attribDepth;
    vld_attrib_entry attribStack[16];
#define VLD_CONTEXT_GROUP(Type, name) Type name;
    VLD_ATTRIB_GROUPS(VLD_CONTEXT_GROUP)
#undef VLD_CONTEXT_GROUP

    // List and render state.
    int32_t listNesting;
    GLenum renderMode;

    // Pixel-store state: [0] packing, [1] unpacking.
    vld_pixel_store pixelStore[2];

    // Statistics.
    vld_int64 fragmentTotal;
    vld_int64 pixelsWritten;
    vld_int64 texDownloadBytes;
    uint32_t texDownloadCount;
    uint32_t lastReading[4];

    // Swap watch.
    double swapTimeout;
    void (*timeoutCallback)(void);

    // Window binding.
    void* dcRecord;

    // Saved hardware state while the context is off its board.
    uint32_t glideStateSize;
    void* savedGlideState;

    // Error.
    GLenum lastError;

    // Vertex capture.
    GLenum beginType;
    int32_t vertexCapacity;
    int32_t vertexCount;
    vld_vertex* vertexArray;
    int32_t faceCapacity;
    vld_face* faceArray;
    int32_t indexCapacity;
    uint32_t* indexArray;
    int32_t expandedCapacity;
    vld_vertex* expandedArray;

    // Face batch of the list compiler.
    uint32_t dlBatchKind;         // 2 when the open batch came from a triangle strip
    int32_t pendingFaceVertices;  // vertices in the pool; above 0 means a batch is open
    uint32_t dlBatchMask;         // attribute bits stored per vertex in the batch
    uint32_t dlStaticDirty;       // attribute bits whose value is not yet written as a record
    vld_vertex* dlVertices;
    int32_t dlVertexCapacity;
    int32_t dlIndexCapacity;
    uint32_t* dlIndices;
    int32_t dlIndexCount;

    uint32_t attrMaskSeed;
    uint32_t beginAttrMask;

    // Routing: two bytes side by side.
    uint8_t compileFlag;
    uint8_t executeFlag;

    // Current attributes of the list-compile layer.
    uint32_t listColorMaterial;
    GLenum listColorMaterialMode;
    GLenum listColorMaterialFace;
    float listNormal[3];
    float listTexCoord[2][4];
    float* listTexCoordPtr;
    int32_t listTexSet;
    uint32_t listTexBit;
    float listColor[4];
    float listAmbient[4];
    float listDiffuse[4];
    float listSpecular[4];
    float listEmission[4];
    float listShininess;

    int32_t inBeginEnd;

    // Matrices.
    float modelviewStack[32][16];
    int32_t modelviewDepth;
    float projectionStack[2][16];
    int32_t projectionDepth;
    vld_texture_transform textureTransforms[2];
    int32_t textureTransformSet;
    float* currentTextureMatrix;
    int32_t* currentTextureIsIdentity;
    float* currentMatrix;

    // Derived transform state.
    int32_t isPerspective;
    float mirrorSign;
    float orthoClipMin, orthoClipMax;
    float eyeDepthNear, eyeDepthFar;
    float depthScale, depthOffset;
    float fogDepthScale, fogDepthOffset;
    float perspDepthScale, perspDepthOffset;
    float perspEyeDepthNear, perspEyeDepthFar;
    float mvpMatrix[16];
    float modelviewInverse[16];
    float eyeObject[3];
    float eyeObjectUnit[3];
    vld_group4 eyeObject4[6];
    uint32_t texgenInverseDirty;
    uint32_t matrixClass[4];
    float textureDerived[2][32];
    int32_t textureMode; // how the GL units map onto the TMUs
    int32_t textureSystemOn; // 0: nothing is textured, whatever the enables say
    int32_t stwHintSt;

    // Pipeline scratch: sized by KSP_vld_enlarge_vertex_count.
    int32_t vertexAllocated;
    int32_t pipelineVertexCapacity;
    void* screenVertices; // 64-byte slots holding Glide vertices
    void* eyeVertices;
    int32_t clipVertexNext;
    int32_t clipVertexBase;
    uint32_t clipCodes;
    float* sseScratch[6];
    void* sseTmuBase;
    void* sseFacesCopy;
    int32_t sseFacesCopyCapacity;
    void* sseVerticesCopy;
    int32_t sseVerticesCopyCapacity;

    // Private to the vertex capture: the template of the next vertex, live (not 0) from
    // glBegin while every call since has kept it equal to the immediate sources, else 0.
    int32_t vertexTemplateLive;
    // How many vertices glVertex may take without a look at the array: the smaller of
    // vertexCapacity and the count at which capture stops.
    int32_t vertexRoom;
    // Records [0, vertexSteady) of vertexArray hold the template's steady blocks (both
    // texture coordinate sets and the material): a vertex taken from the template into one
    // of them needs only its position, normal and colour written. Every write to those
    // blocks of the template, and every other write to those fields of the records, sets it
    // back (vld_current.h).
    int32_t vertexSteady;
    vld_vertex_template vertexTemplate;
};

inline constexpr uint32_t VLD_CONTEXT_MAGIC = 0x564C4400u;

// Bytes of one eye record of the x87 paths (the stamps that guard per-batch work lead it).
inline constexpr uint32_t VLD_EYE_RECORD_BYTES = 128;
// Bytes of one slot of the screen-vertex array, and of the Glide vertex inside it.
inline constexpr uint32_t VLD_SCREEN_SLOT_BYTES = 64;
inline constexpr uint32_t VLD_GLIDE_VERTEX_BYTES = 60;

// ---------------------------------------------------------------------------------------
// The unit record: one board as Glide numbers it.

struct vld_tmu_memory {
    uint32_t lowAddress;
    uint32_t highAddress;
    void* ring;
};

struct vld_unit {
    int32_t opened;
    int32_t index;
    vld_context* currentContext;
    vld_context* lastContext;
    int32_t windowOpen;
    int32_t alphaBuffer;
    int32_t depthBuffer;
    uint32_t glideStateSize;
    int32_t integrated2D;
    void* window;
    int32_t frameBufferBytes;
    int32_t tmuCount;
    int32_t tmuMin;
    uint16_t clearStencil;
    uint16_t clearDepth;
    vld_tmu_memory tmu[2];
    int32_t refreshHz;
    int32_t refreshCode;
    int32_t defaultWidth;
    int32_t defaultHeight;
    int32_t width;
    int32_t height;
    int32_t resolutionCode;
    int32_t sliPair;
    int32_t notRush;
    char boardName[32];
    int32_t passthruInitialised;
    int32_t passthruFixed;
    int32_t passthruPending;
    int32_t passthruWanted;
    double passthruLastChange;
    int32_t colorBuffers;
    int32_t rebindTextures;
    int32_t needStateInit;
};

// ---------------------------------------------------------------------------------------
// The process-wide record.

// One entry of the error log: a distinct report place and how often it occurred.
struct vld_error_log_entry {
    char* file;
    int32_t count; // 0 marks a free entry
    int32_t line;
    GLenum code;   // 0 for "no rendering context"
    uint32_t value; // the refused enumerant for GL_INVALID_ENUM, else 0
};

inline constexpr int VLD_ERROR_LOG_SIZE = 32;
inline constexpr int VLD_MAX_UNITS = 16;

// Settings read from the environment at start-up.
struct vld_settings {
    int32_t verbosity;
    int32_t lodBlend;
    int32_t textureMipmap;
    int32_t vertexPoolingOff;
    int32_t singleBuffer;
    int32_t mipmapDither;
    int32_t specularDisable;
    int32_t detailViaIa;
    int32_t oneTmuEach;
    float gamma;
    int32_t fastPath;
    float txrOowScale;
    float polygonOffsetR;
    float texLodBias;
};

struct vld_db {
    volatile int32_t initCounter;
    int32_t currentContexts;
    vld_error_log_entry errorLog[VLD_ERROR_LOG_SIZE];
    void* grGetFloatVLT;
    void* grGetIntegerVLT;
    void* grSetFloatVLT;
    void* grSetIntegerVLT;
    void* criticalSections[6]; // the second is makeCurrentLock
    void* dcListHead;
    void* dcListTail;
    vld_context* contextListHead;
    vld_context* contextListTail;
    void* listTable;
    int32_t listTableSize;
    void* listUnderConstruction;
    GLuint listUnderConstructionName;
    int32_t initialised;
    vld_settings settings;
    int32_t hosted;
    int32_t glideInitialised;
    int32_t glideShutdownDisabled;
    int32_t swapInterval;
    void* chnMaCallback;
    void* mouseArenaWindow;
    void* textureObjectTable;
    void* textureObjectHead;
    void* textureObjectTail;
    void* memoryNodeLists[2];
    int32_t unitCount;
    vld_unit units[VLD_MAX_UNITS];
    vld_unit* currentUnit;
    int32_t defaultUnit;
    // The lowest (tmuCount - tmuMin) over all boards: how many texture units every board can
    // spare beyond its forced minimum; the texture binder's two-unit decisions read it.
    int32_t minimumSpareUnits;
    void* readBackScratch;
    uint32_t readBackScratchSize;
    int32_t useSse;
};

// The current context of the process, or null.
extern VLD_LOCAL vld_context* vldGc;
// The process-wide record.
extern VLD_LOCAL vld_db vlddb;

// 16-byte aligned heap blocks with their size kept ahead of them.
void* KSP_vld_realloc_aligned(void* old, size_t size);
void KSP_vld_free_aligned(void* block);
