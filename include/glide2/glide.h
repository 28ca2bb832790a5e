/*
 * glide2/glide.h: the Glide 2 API as zvgl2 uses and implements it.
 *
 * Written for this project from the published facts of the Glide 2.4x/2.5x API: the types,
 * enumerant values, structure layouts and calling convention are those of the vendor's
 * glide2x.dll, so that a library built against this header can call the vendor's Glide, and
 * our software board (glide2x) can stand in for it.
 *
 * One deliberate difference: GrHwConfiguration has room for 16 boards. A vendor's Glide fills
 * at most four entries of the array, so the larger record stays compatible with it.
 */
#ifndef ZVGL_GLIDE2_GLIDE_H
#define ZVGL_GLIDE2_GLIDE_H

/* ---- Calling convention and linkage ---------------------------------------------------- */

#if defined(_WIN32) && !defined(_WIN64)
#  define FX_CALL __stdcall
#elif defined(_WIN32)
#  define FX_CALL
#else
#  define FX_CALL
#endif

/* GLIDE2X_BUILD is defined while the software board itself is compiled. */
#if defined(GLIDE2X_BUILD)
#  if defined(_WIN32)
#    define FX_EXPORT __declspec(dllexport)
#  else
#    define FX_EXPORT __attribute__((visibility("default")))
#  endif
#else
#  define FX_EXPORT
#endif

#ifdef __cplusplus
#  define FX_ENTRY extern "C" FX_EXPORT
#else
#  define FX_ENTRY extern FX_EXPORT
#endif

/* ---- Basic types (32-bit on every host) ------------------------------------------------ */

typedef unsigned char  FxU8;
typedef signed char    FxI8;
typedef unsigned short FxU16;
typedef signed short   FxI16;
typedef unsigned int   FxU32;
typedef signed int     FxI32;
typedef int            FxBool;
typedef float          FxFloat;
typedef double         FxDouble;

#define FXTRUE  1
#define FXFALSE 0
#define FXBIT(i) (1L << (i))

typedef FxU32 GrColor_t;
typedef FxU8  GrAlpha_t;
typedef FxU32 GrMipMapId_t;
typedef FxU8  GrFog_t;
typedef FxI32 GrChipID_t;
typedef FxI32 GrLOD_t;
typedef FxI32 GrAspectRatio_t;
typedef FxI32 GrTextureFormat_t;
typedef FxI32 GrBuffer_t;
typedef FxI32 GrCmpFnc_t;
typedef FxI32 GrCombineFunction_t;
typedef FxI32 GrCombineFactor_t;
typedef FxI32 GrCombineLocal_t;
typedef FxI32 GrCombineOther_t;
typedef FxI32 GrAlphaBlendFnc_t;
typedef FxI32 GrCullMode_t;
typedef FxI32 GrDepthBufferMode_t;
typedef FxI32 GrFogMode_t;
typedef FxI32 GrTextureClampMode_t;
typedef FxI32 GrTextureFilterMode_t;
typedef FxI32 GrMipMapMode_t;
typedef FxI32 GrLfbWriteMode_t;
typedef FxU32 GrLock_t;
typedef FxI32 GrOriginLocation_t;
typedef FxI32 GrColorFormat_t;
typedef FxI32 GrScreenResolution_t;
typedef FxI32 GrScreenRefresh_t;
typedef int   GrSstType;
typedef FxU32 GrHint_t;
typedef FxU32 GrSTWHint_t;
typedef FxU32 GrTexTable_t;
typedef FxU32 GrNCCTable_t;
typedef FxU32 GrTexBaseRange_t;
typedef FxI32 GrTextureCombineFnc_t;
typedef FxU32 GrControl_t;
typedef FxU32 GrLfbSrcFmt_t;
typedef FxI32 GrChromakeyMode_t;
typedef FxI32 GrDitherMode_t;
typedef FxI32 GrAlphaSource_t;
typedef FxI32 GrColorCombineFnc_t;
typedef FxI32 GrLfbBypassMode_t;
typedef FxI32 GrPassthruMode_t;
typedef FxI32 GrSmoothingMode_t;

/* The error callback is plain C on every platform (no FX_CALL). */
typedef void (*GrErrorCallbackFnc_t)(const char *string, FxBool fatal);

/* ---- Sizes and limits ------------------------------------------------------------------ */

#define MAX_NUM_SST                 16   /* vendor headers: 4; see the note at the top */
#define GLIDE_VENDOR_MAX_NUM_SST    4
#define GLIDE_NUM_TMU               2
#define MAX_MIPMAPS_PER_SST         1024
#define GR_FOG_TABLE_SIZE           64
#define GLIDE_STATE_PAD_SIZE        312
#define GR_NULL_MIPMAP_HANDLE       ((GrMipMapId_t)(~0u))
#define GR_ZDEPTHVALUE_NEAREST      0xFFFF
#define GR_ZDEPTHVALUE_FARTHEST     0x0000
#define GR_WDEPTHVALUE_NEAREST      0x0000
#define GR_WDEPTHVALUE_FARTHEST     0xFFFF
#define GR_LODBIAS_BILINEAR         0.5
#define GR_LODBIAS_TRILINEAR        0.0

#define GR_VERTEX_X_OFFSET          0
#define GR_VERTEX_Y_OFFSET          1
#define GR_VERTEX_Z_OFFSET          2
#define GR_VERTEX_R_OFFSET          3
#define GR_VERTEX_G_OFFSET          4
#define GR_VERTEX_B_OFFSET          5
#define GR_VERTEX_OOZ_OFFSET        6
#define GR_VERTEX_A_OFFSET          7
#define GR_VERTEX_OOW_OFFSET        8
#define GR_VERTEX_SOW_TMU0_OFFSET   9
#define GR_VERTEX_TOW_TMU0_OFFSET   10
#define GR_VERTEX_OOW_TMU0_OFFSET   11
#define GR_VERTEX_SOW_TMU1_OFFSET   12
#define GR_VERTEX_TOW_TMU1_OFFSET   13
#define GR_VERTEX_OOW_TMU1_OFFSET   14

/* ---- Chips ------------------------------------------------------------------------------ */

#define GR_TMU0 0x0
#define GR_TMU1 0x1
#define GR_TMU2 0x2
#define GR_FBI  0x3

/* ---- Combine units ---------------------------------------------------------------------- */

#define GR_COMBINE_FUNCTION_ZERO                                    0x0
#define GR_COMBINE_FUNCTION_NONE                                    GR_COMBINE_FUNCTION_ZERO
#define GR_COMBINE_FUNCTION_LOCAL                                   0x1
#define GR_COMBINE_FUNCTION_LOCAL_ALPHA                             0x2
#define GR_COMBINE_FUNCTION_SCALE_OTHER                             0x3
#define GR_COMBINE_FUNCTION_BLEND_OTHER                             GR_COMBINE_FUNCTION_SCALE_OTHER
#define GR_COMBINE_FUNCTION_SCALE_OTHER_ADD_LOCAL                   0x4
#define GR_COMBINE_FUNCTION_SCALE_OTHER_ADD_LOCAL_ALPHA             0x5
#define GR_COMBINE_FUNCTION_SCALE_OTHER_MINUS_LOCAL                 0x6
#define GR_COMBINE_FUNCTION_SCALE_OTHER_MINUS_LOCAL_ADD_LOCAL       0x7
#define GR_COMBINE_FUNCTION_BLEND                                   GR_COMBINE_FUNCTION_SCALE_OTHER_MINUS_LOCAL_ADD_LOCAL
#define GR_COMBINE_FUNCTION_SCALE_OTHER_MINUS_LOCAL_ADD_LOCAL_ALPHA 0x8
#define GR_COMBINE_FUNCTION_SCALE_MINUS_LOCAL_ADD_LOCAL             0x9
#define GR_COMBINE_FUNCTION_BLEND_LOCAL                             GR_COMBINE_FUNCTION_SCALE_MINUS_LOCAL_ADD_LOCAL
#define GR_COMBINE_FUNCTION_SCALE_MINUS_LOCAL_ADD_LOCAL_ALPHA       0x10

#define GR_COMBINE_FACTOR_ZERO                  0x0
#define GR_COMBINE_FACTOR_NONE                  GR_COMBINE_FACTOR_ZERO
#define GR_COMBINE_FACTOR_LOCAL                 0x1
#define GR_COMBINE_FACTOR_OTHER_ALPHA           0x2
#define GR_COMBINE_FACTOR_LOCAL_ALPHA           0x3
#define GR_COMBINE_FACTOR_TEXTURE_ALPHA         0x4
#define GR_COMBINE_FACTOR_DETAIL_FACTOR         GR_COMBINE_FACTOR_TEXTURE_ALPHA
#define GR_COMBINE_FACTOR_TEXTURE_RGB           0x5
#define GR_COMBINE_FACTOR_LOD_FRACTION          0x5
#define GR_COMBINE_FACTOR_ONE                   0x8
#define GR_COMBINE_FACTOR_ONE_MINUS_LOCAL       0x9
#define GR_COMBINE_FACTOR_ONE_MINUS_OTHER_ALPHA 0xa
#define GR_COMBINE_FACTOR_ONE_MINUS_LOCAL_ALPHA 0xb
#define GR_COMBINE_FACTOR_ONE_MINUS_TEXTURE_ALPHA 0xc
#define GR_COMBINE_FACTOR_ONE_MINUS_DETAIL_FACTOR GR_COMBINE_FACTOR_ONE_MINUS_TEXTURE_ALPHA
#define GR_COMBINE_FACTOR_ONE_MINUS_LOD_FRACTION 0xd

#define GR_COMBINE_LOCAL_ITERATED 0x0
#define GR_COMBINE_LOCAL_CONSTANT 0x1
#define GR_COMBINE_LOCAL_NONE     GR_COMBINE_LOCAL_CONSTANT
#define GR_COMBINE_LOCAL_DEPTH    0x2

#define GR_COMBINE_OTHER_ITERATED 0x0
#define GR_COMBINE_OTHER_TEXTURE  0x1
#define GR_COMBINE_OTHER_CONSTANT 0x2
#define GR_COMBINE_OTHER_NONE     GR_COMBINE_OTHER_CONSTANT

#define GR_TEXTURECOMBINE_ZERO           0x0
#define GR_TEXTURECOMBINE_DECAL          0x1
#define GR_TEXTURECOMBINE_OTHER          0x2
#define GR_TEXTURECOMBINE_ADD            0x3
#define GR_TEXTURECOMBINE_MULTIPLY       0x4
#define GR_TEXTURECOMBINE_SUBTRACT       0x5
#define GR_TEXTURECOMBINE_DETAIL         0x6
#define GR_TEXTURECOMBINE_DETAIL_OTHER   0x7
#define GR_TEXTURECOMBINE_TRILINEAR_ODD  0x8
#define GR_TEXTURECOMBINE_TRILINEAR_EVEN 0x9
#define GR_TEXTURECOMBINE_ONE            0xa

#define GR_ALPHASOURCE_CC_ALPHA                          0x0
#define GR_ALPHASOURCE_ITERATED_ALPHA                    0x1
#define GR_ALPHASOURCE_TEXTURE_ALPHA                     0x2
#define GR_ALPHASOURCE_TEXTURE_ALPHA_TIMES_ITERATED_ALPHA 0x3

#define GR_COLORCOMBINE_ZERO                          0x0
#define GR_COLORCOMBINE_CCRGB                         0x1
#define GR_COLORCOMBINE_ITRGB                         0x2
#define GR_COLORCOMBINE_ITRGB_DELTA0                  0x3
#define GR_COLORCOMBINE_DECAL_TEXTURE                 0x4
#define GR_COLORCOMBINE_TEXTURE_TIMES_CCRGB           0x5
#define GR_COLORCOMBINE_TEXTURE_TIMES_ITRGB           0x6
#define GR_COLORCOMBINE_TEXTURE_TIMES_ITRGB_DELTA0    0x7
#define GR_COLORCOMBINE_TEXTURE_TIMES_ITRGB_ADD_ALPHA 0x8
#define GR_COLORCOMBINE_TEXTURE_TIMES_ALPHA           0x9
#define GR_COLORCOMBINE_TEXTURE_TIMES_ALPHA_ADD_ITRGB 0xa
#define GR_COLORCOMBINE_TEXTURE_ADD_ITRGB             0xb
#define GR_COLORCOMBINE_TEXTURE_SUB_ITRGB             0xc
#define GR_COLORCOMBINE_CCRGB_BLEND_ITRGB_ON_TEXALPHA 0xd
#define GR_COLORCOMBINE_DIFF_SPEC_A                   0xe
#define GR_COLORCOMBINE_DIFF_SPEC_B                   0xf
#define GR_COLORCOMBINE_ONE                           0x10

/* ---- Blending, comparison, culling, depth, fog, dither, chroma key ---------------------- */

#define GR_BLEND_ZERO                0x0
#define GR_BLEND_SRC_ALPHA           0x1
#define GR_BLEND_SRC_COLOR           0x2
#define GR_BLEND_DST_COLOR           GR_BLEND_SRC_COLOR
#define GR_BLEND_DST_ALPHA           0x3
#define GR_BLEND_ONE                 0x4
#define GR_BLEND_ONE_MINUS_SRC_ALPHA 0x5
#define GR_BLEND_ONE_MINUS_SRC_COLOR 0x6
#define GR_BLEND_ONE_MINUS_DST_COLOR GR_BLEND_ONE_MINUS_SRC_COLOR
#define GR_BLEND_ONE_MINUS_DST_ALPHA 0x7
#define GR_BLEND_RESERVED_8          0x8
#define GR_BLEND_RESERVED_9          0x9
#define GR_BLEND_RESERVED_A          0xa
#define GR_BLEND_RESERVED_B          0xb
#define GR_BLEND_RESERVED_C          0xc
#define GR_BLEND_RESERVED_D          0xd
#define GR_BLEND_RESERVED_E          0xe
#define GR_BLEND_ALPHA_SATURATE      0xf
#define GR_BLEND_PREFOG_COLOR        GR_BLEND_ALPHA_SATURATE

#define GR_CMP_NEVER    0x0
#define GR_CMP_LESS     0x1
#define GR_CMP_EQUAL    0x2
#define GR_CMP_LEQUAL   0x3
#define GR_CMP_GREATER  0x4
#define GR_CMP_NOTEQUAL 0x5
#define GR_CMP_GEQUAL   0x6
#define GR_CMP_ALWAYS   0x7

#define GR_CULL_DISABLE  0x0
#define GR_CULL_NEGATIVE 0x1
#define GR_CULL_POSITIVE 0x2

#define GR_DEPTHBUFFER_DISABLE                 0x0
#define GR_DEPTHBUFFER_ZBUFFER                 0x1
#define GR_DEPTHBUFFER_WBUFFER                 0x2
#define GR_DEPTHBUFFER_ZBUFFER_COMPARE_TO_BIAS 0x3
#define GR_DEPTHBUFFER_WBUFFER_COMPARE_TO_BIAS 0x4

#define GR_FOG_DISABLE             0x0
#define GR_FOG_WITH_ITERATED_ALPHA 0x1
#define GR_FOG_WITH_TABLE          0x2
#define GR_FOG_WITH_ITERATED_Z     0x3
#define GR_FOG_MULT2               0x100
#define GR_FOG_ADD2                0x200

#define GR_DITHER_DISABLE 0x0
#define GR_DITHER_2x2     0x1
#define GR_DITHER_4x4     0x2

#define GR_CHROMAKEY_DISABLE 0x0
#define GR_CHROMAKEY_ENABLE  0x1

/* ---- Buffers, colour format, origin, LFB ------------------------------------------------ */

#define GR_BUFFER_FRONTBUFFER  0x0
#define GR_BUFFER_BACKBUFFER   0x1
#define GR_BUFFER_AUXBUFFER    0x2
#define GR_BUFFER_DEPTHBUFFER  0x3
#define GR_BUFFER_ALPHABUFFER  0x4
#define GR_BUFFER_TRIPLEBUFFER 0x5

#define GR_COLORFORMAT_ARGB 0x0
#define GR_COLORFORMAT_ABGR 0x1
#define GR_COLORFORMAT_RGBA 0x2
#define GR_COLORFORMAT_BGRA 0x3

#define GR_ORIGIN_UPPER_LEFT 0x0
#define GR_ORIGIN_LOWER_LEFT 0x1
#define GR_ORIGIN_ANY        0xFF

#define GR_LFB_READ_ONLY  0x00
#define GR_LFB_WRITE_ONLY 0x01
#define GR_LFB_IDLE       0x00
#define GR_LFB_NOIDLE     0x10

#define GR_LFBWRITEMODE_565        0x0
#define GR_LFBWRITEMODE_555        0x1
#define GR_LFBWRITEMODE_1555       0x2
#define GR_LFBWRITEMODE_RESERVED1  0x3
#define GR_LFBWRITEMODE_888        0x4
#define GR_LFBWRITEMODE_8888       0x5
#define GR_LFBWRITEMODE_RESERVED2  0x6
#define GR_LFBWRITEMODE_RESERVED3  0x7
#define GR_LFBWRITEMODE_RESERVED4  0x8
#define GR_LFBWRITEMODE_RESERVED5  0x9
#define GR_LFBWRITEMODE_RESERVED6  0xa
#define GR_LFBWRITEMODE_RESERVED7  0xb
#define GR_LFBWRITEMODE_565_DEPTH  0xc
#define GR_LFBWRITEMODE_555_DEPTH  0xd
#define GR_LFBWRITEMODE_1555_DEPTH 0xe
#define GR_LFBWRITEMODE_ZA16       0xf
#define GR_LFBWRITEMODE_ANY        0xFF

#define GR_LFB_SRC_FMT_565        0x00
#define GR_LFB_SRC_FMT_555        0x01
#define GR_LFB_SRC_FMT_1555       0x02
#define GR_LFB_SRC_FMT_888        0x04
#define GR_LFB_SRC_FMT_8888       0x05
#define GR_LFB_SRC_FMT_565_DEPTH  0x0c
#define GR_LFB_SRC_FMT_555_DEPTH  0x0d
#define GR_LFB_SRC_FMT_1555_DEPTH 0x0e
#define GR_LFB_SRC_FMT_ZA16       0x0f
#define GR_LFB_SRC_FMT_RLE16      0x80

#define GR_LFBBYPASS_DISABLE  0x0
#define GR_LFBBYPASS_ENABLE   0x1
#define GR_PASSTHRU_SHOW_VGA  0x0
#define GR_PASSTHRU_SHOW_SST1 0x1
#define GR_SMOOTHING_DISABLE  0x0
#define GR_SMOOTHING_ENABLE   0x1

/* ---- Textures --------------------------------------------------------------------------- */

#define GR_LOD_256 0x0
#define GR_LOD_128 0x1
#define GR_LOD_64  0x2
#define GR_LOD_32  0x3
#define GR_LOD_16  0x4
#define GR_LOD_8   0x5
#define GR_LOD_4   0x6
#define GR_LOD_2   0x7
#define GR_LOD_1   0x8

#define GR_ASPECT_8x1 0x0
#define GR_ASPECT_4x1 0x1
#define GR_ASPECT_2x1 0x2
#define GR_ASPECT_1x1 0x3
#define GR_ASPECT_1x2 0x4
#define GR_ASPECT_1x4 0x5
#define GR_ASPECT_1x8 0x6

#define GR_TEXFMT_8BIT               0x0
#define GR_TEXFMT_RGB_332            GR_TEXFMT_8BIT
#define GR_TEXFMT_YIQ_422            0x1
#define GR_TEXFMT_ALPHA_8            0x2
#define GR_TEXFMT_INTENSITY_8        0x3
#define GR_TEXFMT_ALPHA_INTENSITY_44 0x4
#define GR_TEXFMT_P_8                0x5
#define GR_TEXFMT_RSVD0              0x6
#define GR_TEXFMT_RSVD1              0x7
#define GR_TEXFMT_16BIT              0x8
#define GR_TEXFMT_ARGB_8332          GR_TEXFMT_16BIT
#define GR_TEXFMT_AYIQ_8422          0x9
#define GR_TEXFMT_RGB_565            0xa
#define GR_TEXFMT_ARGB_1555          0xb
#define GR_TEXFMT_ARGB_4444          0xc
#define GR_TEXFMT_ALPHA_INTENSITY_88 0xd
#define GR_TEXFMT_AP_88              0xe
#define GR_TEXFMT_RSVD2              0xf

#define GR_TEXTURECLAMP_WRAP  0x0
#define GR_TEXTURECLAMP_CLAMP 0x1

#define GR_TEXTUREFILTER_POINT_SAMPLED 0x0
#define GR_TEXTUREFILTER_BILINEAR      0x1

#define GR_MIPMAP_DISABLE        0x0
#define GR_MIPMAP_NEAREST        0x1
#define GR_MIPMAP_NEAREST_DITHER 0x2

#define GR_MIPMAPLEVELMASK_EVEN FXBIT(0)
#define GR_MIPMAPLEVELMASK_ODD  FXBIT(1)
#define GR_MIPMAPLEVELMASK_BOTH (GR_MIPMAPLEVELMASK_EVEN | GR_MIPMAPLEVELMASK_ODD)

#define GR_TEXTABLE_NCC0    0x0
#define GR_TEXTABLE_NCC1    0x1
#define GR_TEXTABLE_PALETTE 0x2

#define GR_NCCTABLE_NCC0 0x0
#define GR_NCCTABLE_NCC1 0x1

#define GR_TEXBASE_256      0x0
#define GR_TEXBASE_128      0x1
#define GR_TEXBASE_64       0x2
#define GR_TEXBASE_32_TO_1  0x3

/* ---- Boards, video, hints, control ------------------------------------------------------ */

#define GR_SSTTYPE_VOODOO  0
#define GR_SSTTYPE_SST96   1
#define GR_SSTTYPE_AT3D    2
#define GR_SSTTYPE_Voodoo2 3
#define GR_SSTTYPE_Banshee 4

#define GR_RESOLUTION_320x200   0x0
#define GR_RESOLUTION_320x240   0x1
#define GR_RESOLUTION_400x256   0x2
#define GR_RESOLUTION_512x384   0x3
#define GR_RESOLUTION_640x200   0x4
#define GR_RESOLUTION_640x350   0x5
#define GR_RESOLUTION_640x400   0x6
#define GR_RESOLUTION_640x480   0x7
#define GR_RESOLUTION_800x600   0x8
#define GR_RESOLUTION_960x720   0x9
#define GR_RESOLUTION_856x480   0xa
#define GR_RESOLUTION_512x256   0xb
#define GR_RESOLUTION_1024x768  0xc
#define GR_RESOLUTION_1280x1024 0xd
#define GR_RESOLUTION_1600x1200 0xe
#define GR_RESOLUTION_400x300   0xf
#define GR_RESOLUTION_NONE      0xff
#define GR_RESOLUTION_MIN       GR_RESOLUTION_320x200
#define GR_RESOLUTION_MAX       GR_RESOLUTION_1600x1200

#define GR_REFRESH_60Hz  0x0
#define GR_REFRESH_70Hz  0x1
#define GR_REFRESH_72Hz  0x2
#define GR_REFRESH_75Hz  0x3
#define GR_REFRESH_80Hz  0x4
#define GR_REFRESH_90Hz  0x5
#define GR_REFRESH_100Hz 0x6
#define GR_REFRESH_85Hz  0x7
#define GR_REFRESH_120Hz 0x8
#define GR_REFRESH_NONE  0xff

#define GR_HINTTYPE_MIN             0
#define GR_HINT_STWHINT             0
#define GR_HINT_FIFOCHECKHINT       1
#define GR_HINT_FPUPRECISION        2
#define GR_HINT_ALLOW_MIPMAP_DITHER 3
#define GR_HINT_LFB_WRITE           4
#define GR_HINT_LFB_PROTECT         5
#define GR_HINT_LFB_RESET           6
#define GR_HINTTYPE_MAX             6
#define GR_GENERATE_FIFOCHECK_HINT_MASK(hwm, lwm) ((((hwm) & 0xffff) << 16) | ((lwm) & 0xffff))

#define GR_STWHINT_W_DIFF_FBI  FXBIT(0)
#define GR_STWHINT_W_DIFF_TMU0 FXBIT(1)
#define GR_STWHINT_ST_DIFF_TMU0 FXBIT(2)
#define GR_STWHINT_W_DIFF_TMU1 FXBIT(3)
#define GR_STWHINT_ST_DIFF_TMU1 FXBIT(4)
#define GR_STWHINT_W_DIFF_TMU2 FXBIT(5)
#define GR_STWHINT_ST_DIFF_TMU2 FXBIT(6)

#define GR_CONTROL_ACTIVATE   0x1
#define GR_CONTROL_DEACTIVATE 0x2
#define GR_CONTROL_RESIZE     0x3
#define GR_CONTROL_MOVE       0x4

/* ---- Structures ------------------------------------------------------------------------- */

typedef struct {
  float sow;   /* s / w */
  float tow;   /* t / w */
  float oow;   /* 1 / w, used only with the W_DIFF hint of the TMU */
} GrTmuVertex;

typedef struct {
  float x, y;          /* screen position; the board keeps 12.4 fixed point modulo 4096 */
  float z;             /* ignored */
  float r, g, b;       /* 0..255 */
  float ooz;           /* 65535 / z, for a Z buffer */
  float a;             /* 0..255 */
  float oow;           /* 1 / w: W buffer, fog table, perspective */
  GrTmuVertex tmuvtx[GLIDE_NUM_TMU];
} GrVertex;

typedef struct {
  int tmuRev;
  int tmuRam;          /* MB */
} GrTMUConfig_t;

typedef struct {
  int fbRam;           /* MB */
  int fbiRev;
  int nTexelfx;        /* TMU count */
  FxBool sliDetect;
  GrTMUConfig_t tmuConfig[GLIDE_NUM_TMU];
} GrVoodooConfig_t;

typedef GrVoodooConfig_t GrVoodoo2Config_t;

typedef struct {
  int fbRam;
  int nTexelfx;
  GrTMUConfig_t tmuConfig;
} GrSst96Config_t;

typedef struct {
  int rev;
} GrAT3DConfig_t;

typedef struct {
  int num_sst;
  struct {
    GrSstType type;
    union SstBoard_u {
      GrVoodooConfig_t  VoodooConfig;
      GrSst96Config_t   SST96Config;
      GrAT3DConfig_t    AT3DConfig;
      GrVoodoo2Config_t Voodoo2Config;
    } sstBoard;
  } SSTs[MAX_NUM_SST];
} GrHwConfiguration;

typedef struct {
  GrLOD_t smallLod;
  GrLOD_t largeLod;
  GrAspectRatio_t aspectRatio;
  GrTextureFormat_t format;
  void *data;
} GrTexInfo;

typedef struct {
  int size;            /* set to sizeof(GrLfbInfo_t) before grLfbLock */
  void *lfbPtr;
  FxU32 strideInBytes;
  GrLfbWriteMode_t writeMode;
  GrOriginLocation_t origin;
} GrLfbInfo_t;

typedef struct {
  FxU32 pixelsIn;
  FxU32 chromaFail;
  FxU32 zFuncFail;
  FxU32 aFuncFail;
  FxU32 pixelsOut;
} GrSstPerfStats_t;

typedef struct {
  FxU32 data[256];     /* 0x??RRGGBB; the top byte is not used */
} GuTexPalette;

typedef struct {
  FxU8  yRGB[16];
  FxI16 iRGB[4][3];
  FxI16 qRGB[4][3];
  FxU32 packed_data[12]; /* what the hardware receives */
} GuNccTable;

typedef union {
  GuNccTable   nccTable;
  GuTexPalette palette;
} GuTexTable;

typedef struct {
  FxU32 width, height;
  int small_lod, large_lod;
  GrAspectRatio_t aspect_ratio;
  GrTextureFormat_t format;
} Gu3dfHeader;

typedef struct {
  Gu3dfHeader header;
  GuTexTable  table;
  void       *data;
  FxU32       mem_required;
} Gu3dfInfo;

typedef struct {
  char pad[GLIDE_STATE_PAD_SIZE];
} GrState;

/* ---- Functions -------------------------------------------------------------------------- */

/* Library, boards, windows */
FX_ENTRY void   FX_CALL grGlideInit(void);
FX_ENTRY void   FX_CALL grGlideShutdown(void);
FX_ENTRY void   FX_CALL grGlideGetVersion(char version[80]);
FX_ENTRY void   FX_CALL grGlideGetState(GrState *state);
FX_ENTRY void   FX_CALL grGlideSetState(const GrState *state);
FX_ENTRY void   FX_CALL grHints(GrHint_t hintType, FxU32 hintMask);
FX_ENTRY void   FX_CALL grErrorSetCallback(GrErrorCallbackFnc_t fnc);
FX_ENTRY FxBool FX_CALL grSstQueryHardware(GrHwConfiguration *hwconfig);
FX_ENTRY FxBool FX_CALL grSstQueryBoards(GrHwConfiguration *hwconfig);
FX_ENTRY void   FX_CALL grSstSelect(int which_sst);
FX_ENTRY FxBool FX_CALL grSstWinOpen(FxU32 hWnd, GrScreenResolution_t screen_resolution,
                                     GrScreenRefresh_t refresh_rate, GrColorFormat_t color_format,
                                     GrOriginLocation_t origin_location, int nColBuffers,
                                     int nAuxBuffers);
FX_ENTRY void   FX_CALL grSstWinClose(void);
FX_ENTRY FxBool FX_CALL grSstControl(GrControl_t code);
FX_ENTRY void   FX_CALL grSstIdle(void);
FX_ENTRY FxU32  FX_CALL grSstScreenWidth(void);
FX_ENTRY FxU32  FX_CALL grSstScreenHeight(void);
FX_ENTRY void   FX_CALL grSstPerfStats(GrSstPerfStats_t *pStats);
FX_ENTRY void   FX_CALL grSstResetPerfStats(void);
FX_ENTRY void   FX_CALL grSstOrigin(GrOriginLocation_t origin);
FX_ENTRY void   FX_CALL grGammaCorrectionValue(float value);

/* Buffers */
FX_ENTRY void   FX_CALL grBufferClear(GrColor_t color, GrAlpha_t alpha, FxU16 depth);
FX_ENTRY void   FX_CALL grBufferSwap(int swap_interval);
FX_ENTRY int    FX_CALL grBufferNumPending(void);
FX_ENTRY void   FX_CALL grRenderBuffer(GrBuffer_t buffer);
FX_ENTRY void   FX_CALL grColorMask(FxBool rgb, FxBool a);
FX_ENTRY void   FX_CALL grDepthMask(FxBool mask);
FX_ENTRY void   FX_CALL grClipWindow(FxU32 minx, FxU32 miny, FxU32 maxx, FxU32 maxy);

/* Drawing */
FX_ENTRY void   FX_CALL grDrawTriangle(const GrVertex *a, const GrVertex *b, const GrVertex *c);
FX_ENTRY void   FX_CALL grDrawPlanarPolygonVertexList(int nverts, const GrVertex vlist[]);
FX_ENTRY void   FX_CALL grDrawPolygonVertexList(int nverts, const GrVertex vlist[]);
FX_ENTRY void   FX_CALL grDrawLine(const GrVertex *v1, const GrVertex *v2);
FX_ENTRY void   FX_CALL grDrawPoint(const GrVertex *pt);
FX_ENTRY void   FX_CALL grAADrawTriangle(const GrVertex *a, const GrVertex *b, const GrVertex *c,
                                         FxBool ab_antialias, FxBool bc_antialias,
                                         FxBool ca_antialias);
FX_ENTRY void   FX_CALL grAADrawPolygonVertexList(const int nverts, const GrVertex vlist[]);
FX_ENTRY void   FX_CALL grAADrawLine(const GrVertex *v1, const GrVertex *v2);
FX_ENTRY void   FX_CALL grAADrawPoint(const GrVertex *pt);

/* Pixel pipeline state */
FX_ENTRY void   FX_CALL grColorCombine(GrCombineFunction_t function, GrCombineFactor_t factor,
                                       GrCombineLocal_t local, GrCombineOther_t other,
                                       FxBool invert);
FX_ENTRY void   FX_CALL grAlphaCombine(GrCombineFunction_t function, GrCombineFactor_t factor,
                                       GrCombineLocal_t local, GrCombineOther_t other,
                                       FxBool invert);
FX_ENTRY void   FX_CALL grConstantColorValue(GrColor_t value);
FX_ENTRY void   FX_CALL grAlphaBlendFunction(GrAlphaBlendFnc_t rgb_sf, GrAlphaBlendFnc_t rgb_df,
                                             GrAlphaBlendFnc_t alpha_sf, GrAlphaBlendFnc_t alpha_df);
FX_ENTRY void   FX_CALL grAlphaTestFunction(GrCmpFnc_t function);
FX_ENTRY void   FX_CALL grAlphaTestReferenceValue(GrAlpha_t value);
FX_ENTRY void   FX_CALL grDepthBufferMode(GrDepthBufferMode_t mode);
FX_ENTRY void   FX_CALL grDepthBufferFunction(GrCmpFnc_t function);
FX_ENTRY void   FX_CALL grDepthBiasLevel(FxI16 level);
FX_ENTRY void   FX_CALL grCullMode(GrCullMode_t mode);
FX_ENTRY void   FX_CALL grFogMode(GrFogMode_t mode);
FX_ENTRY void   FX_CALL grFogColorValue(GrColor_t fogcolor);
FX_ENTRY void   FX_CALL grFogTable(const GrFog_t ft[GR_FOG_TABLE_SIZE]);
FX_ENTRY void   FX_CALL grDitherMode(GrDitherMode_t mode);
FX_ENTRY void   FX_CALL grChromakeyMode(GrChromakeyMode_t mode);
FX_ENTRY void   FX_CALL grChromakeyValue(GrColor_t value);

/* Textures */
FX_ENTRY void   FX_CALL grTexSource(GrChipID_t tmu, FxU32 startAddress, FxU32 evenOdd,
                                    GrTexInfo *info);
FX_ENTRY void   FX_CALL grTexClampMode(GrChipID_t tmu, GrTextureClampMode_t s_clampmode,
                                       GrTextureClampMode_t t_clampmode);
FX_ENTRY void   FX_CALL grTexFilterMode(GrChipID_t tmu, GrTextureFilterMode_t minfilter_mode,
                                        GrTextureFilterMode_t magfilter_mode);
FX_ENTRY void   FX_CALL grTexMipMapMode(GrChipID_t tmu, GrMipMapMode_t mode, FxBool lodBlend);
FX_ENTRY void   FX_CALL grTexLodBiasValue(GrChipID_t tmu, float bias);
FX_ENTRY void   FX_CALL grTexDetailControl(GrChipID_t tmu, int lod_bias, FxU8 detail_scale,
                                           float detail_max);
FX_ENTRY void   FX_CALL grTexCombine(GrChipID_t tmu, GrCombineFunction_t rgb_function,
                                     GrCombineFactor_t rgb_factor,
                                     GrCombineFunction_t alpha_function,
                                     GrCombineFactor_t alpha_factor, FxBool rgb_invert,
                                     FxBool alpha_invert);
FX_ENTRY void   FX_CALL grTexCombineFunction(GrChipID_t tmu, GrTextureCombineFnc_t fnc);
FX_ENTRY void   FX_CALL grTexNCCTable(GrChipID_t tmu, GrNCCTable_t table);
FX_ENTRY void   FX_CALL grTexDownloadTable(GrChipID_t tmu, GrTexTable_t type, void *data);
FX_ENTRY void   FX_CALL grTexDownloadTablePartial(GrChipID_t tmu, GrTexTable_t type, void *data,
                                                  int start, int end);
FX_ENTRY void   FX_CALL grTexDownloadMipMap(GrChipID_t tmu, FxU32 startAddress, FxU32 evenOdd,
                                            GrTexInfo *info);
FX_ENTRY void   FX_CALL grTexDownloadMipMapLevel(GrChipID_t tmu, FxU32 startAddress,
                                                 GrLOD_t thisLod, GrLOD_t largeLod,
                                                 GrAspectRatio_t aspectRatio,
                                                 GrTextureFormat_t format, FxU32 evenOdd,
                                                 void *data);
FX_ENTRY void   FX_CALL grTexDownloadMipMapLevelPartial(GrChipID_t tmu, FxU32 startAddress,
                                                        GrLOD_t thisLod, GrLOD_t largeLod,
                                                        GrAspectRatio_t aspectRatio,
                                                        GrTextureFormat_t format, FxU32 evenOdd,
                                                        void *data, int start, int end);
FX_ENTRY FxU32  FX_CALL grTexTextureMemRequired(FxU32 evenOdd, GrTexInfo *info);
FX_ENTRY FxU32  FX_CALL grTexCalcMemRequired(GrLOD_t lodmin, GrLOD_t lodmax,
                                             GrAspectRatio_t aspect, GrTextureFormat_t fmt);
FX_ENTRY FxU32  FX_CALL grTexMinAddress(GrChipID_t tmu);
FX_ENTRY FxU32  FX_CALL grTexMaxAddress(GrChipID_t tmu);

/* Linear frame buffer */
FX_ENTRY FxBool FX_CALL grLfbLock(GrLock_t type, GrBuffer_t buffer, GrLfbWriteMode_t writeMode,
                                  GrOriginLocation_t origin, FxBool pixelPipeline,
                                  GrLfbInfo_t *info);
FX_ENTRY FxBool FX_CALL grLfbUnlock(GrLock_t type, GrBuffer_t buffer);
FX_ENTRY void   FX_CALL grLfbConstantAlpha(GrAlpha_t alpha);
FX_ENTRY void   FX_CALL grLfbConstantDepth(FxU16 depth);
FX_ENTRY FxBool FX_CALL grLfbReadRegion(GrBuffer_t src_buffer, FxU32 src_x, FxU32 src_y,
                                        FxU32 src_width, FxU32 src_height, FxU32 dst_stride,
                                        void *dst_data);
FX_ENTRY FxBool FX_CALL grLfbWriteRegion(GrBuffer_t dst_buffer, FxU32 dst_x, FxU32 dst_y,
                                         GrLfbSrcFmt_t src_format, FxU32 src_width,
                                         FxU32 src_height, FxI32 src_stride, void *src_data);

/* Utility functions, exported by the same library */
FX_ENTRY float  FX_CALL guFogTableIndexToW(int i);
FX_ENTRY void   FX_CALL guFogGenerateExp(GrFog_t fogtable[GR_FOG_TABLE_SIZE], float density);
FX_ENTRY void   FX_CALL guFogGenerateExp2(GrFog_t fogtable[GR_FOG_TABLE_SIZE], float density);
FX_ENTRY void   FX_CALL guFogGenerateLinear(GrFog_t fogtable[GR_FOG_TABLE_SIZE], float nearZ,
                                            float farZ);
FX_ENTRY FxBool FX_CALL gu3dfGetInfo(const char *filename, Gu3dfInfo *info);
FX_ENTRY FxBool FX_CALL gu3dfLoad(const char *filename, Gu3dfInfo *data);

/* ---- Layout checks (the vendor's ABI) ---------------------------------------------------- */

#ifdef __cplusplus
#include <cstddef>
static_assert(sizeof(GrVertex) == 60, "GrVertex is 60 bytes");
static_assert(offsetof(GrVertex, oow) == 32 && offsetof(GrVertex, tmuvtx) == 36, "GrVertex order");
static_assert(sizeof(GrTMUConfig_t) == 8 && sizeof(GrVoodooConfig_t) == 32, "board config sizes");
static_assert(sizeof(GrSst96Config_t) == 16 && sizeof(GrAT3DConfig_t) == 4, "board config sizes");
static_assert(sizeof(GrHwConfiguration) == 4 + 36 * MAX_NUM_SST, "one 36-byte entry per board");
static_assert(offsetof(GrHwConfiguration, SSTs[1].sstBoard.VoodooConfig.fbRam) == 8 + 36,
              "board i starts at 4 + 36 i");
static_assert(offsetof(GrHwConfiguration, SSTs[0].sstBoard.VoodooConfig.tmuConfig[1].tmuRam) == 36,
              "second TMU's memory at 36");
static_assert(sizeof(GrSstPerfStats_t) == 20, "GrSstPerfStats_t is 20 bytes");
static_assert(sizeof(GuTexPalette) == 1024, "GuTexPalette is 1024 bytes");
static_assert(sizeof(GuNccTable) == 112 && offsetof(GuNccTable, packed_data) == 64, "GuNccTable");
static_assert(sizeof(GuTexTable) == 1024, "GuTexTable is 1024 bytes");
static_assert(sizeof(Gu3dfHeader) == 24, "Gu3dfHeader is 24 bytes");
static_assert(sizeof(GrState) == 312, "GrState is 312 bytes");
#if defined(__i386__) || defined(_M_IX86)
static_assert(sizeof(GrTexInfo) == 20 && sizeof(GrLfbInfo_t) == 20, "pointer records, 32-bit");
static_assert(sizeof(Gu3dfInfo) == 1056 && offsetof(Gu3dfInfo, data) == 1048, "Gu3dfInfo, 32-bit");
#endif
#endif

#endif /* ZVGL_GLIDE2_GLIDE_H */
