// .3df texture files: a four-line text header, an NCC table or palette for the formats that
// need one, then every level from the largest to the smallest (16-bit texels big-endian).
//
// The reader trusts nothing in the file: the header is read within 100 bytes, every number is
// checked against the few values a texture can have, and the loader writes exactly the size the
// header describes into the caller's buffer, refusing when the caller's size is smaller.
#include "tmu/tmu.h"

#include <cstdio>
#include <cstring>

namespace zvb {

namespace {

constexpr size_t kHeaderLimit = 100;

struct FormatName {
  const char *name;
  int format;
};

constexpr FormatName kFormatNames[] = {
    {"I8", GR_TEXFMT_INTENSITY_8},          {"A8", GR_TEXFMT_ALPHA_8},
    {"AI44", GR_TEXFMT_ALPHA_INTENSITY_44}, {"YIQ", GR_TEXFMT_YIQ_422},
    {"RGB332", GR_TEXFMT_RGB_332},          {"RGB565", GR_TEXFMT_RGB_565},
    {"ARGB8332", GR_TEXFMT_ARGB_8332},      {"ARGB1555", GR_TEXFMT_ARGB_1555},
    {"AYIQ8422", GR_TEXFMT_AYIQ_8422},      {"ARGB4444", GR_TEXFMT_ARGB_4444},
    {"AI88", GR_TEXFMT_ALPHA_INTENSITY_88}, {"P8", GR_TEXFMT_P_8},
    {"AP88", GR_TEXFMT_AP_88},
};

// The four header lines, NUL-terminated, each without its '\n'.
struct HeaderLines {
  char text[kHeaderLimit + 1];
  const char *line[4];
};

// Reads the four header lines (at most 100 bytes in all). Leaves the file at the binary part.
bool read_header_lines(std::FILE *f, HeaderLines *h) {
  size_t used = 0;
  int lines = 0;
  h->line[0] = h->text;
  while (lines < 4) {
    int c = std::fgetc(f);
    if (c == EOF || used >= kHeaderLimit) return false;
    if (c == '\n') {
      h->text[used++] = '\0';
      if (++lines < 4) h->line[lines] = h->text + used;
    } else {
      if (c == '\0') return false;
      h->text[used++] = char(c);
    }
  }
  return true;
}

const char *skip_spaces(const char *p) {
  while (*p == ' ' || *p == '\t' || *p == '\r') ++p;
  return p;
}

// A decimal number of at most 4 digits (larger values are never valid here).
bool parse_number(const char **p, int *value) {
  const char *q = skip_spaces(*p);
  int v = 0, digits = 0;
  while (*q >= '0' && *q <= '9') {
    if (++digits > 4) return false;
    v = v * 10 + (*q++ - '0');
  }
  if (digits == 0) return false;
  *p = q;
  *value = v;
  return true;
}

// "<prefix> <a> <b>" with nothing but spaces after.
bool parse_pair(const char *line, const char *prefix, int *a, int *b) {
  const char *p = skip_spaces(line);
  size_t n = std::strlen(prefix);
  if (std::strncmp(p, prefix, n) != 0) return false;
  p += n;
  if (!parse_number(&p, a) || !parse_number(&p, b)) return false;
  return *skip_spaces(p) == '\0';
}

int format_from_name(const char *line) {
  char name[16];
  const char *p = skip_spaces(line);
  size_t n = 0;
  while (p[n] && p[n] != ' ' && p[n] != '\t' && p[n] != '\r') {
    if (n + 1 >= sizeof name) return -1;
    char c = p[n];
    name[n++] = (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c;
  }
  name[n] = '\0';
  if (*skip_spaces(p + n) != '\0') return -1;
  for (const FormatName &f : kFormatNames)
    if (std::strcmp(f.name, name) == 0) return f.format;
  return -1;
}

// GR_LOD value of a side length 1..256 that is a power of two, else -1.
int lod_from_side(int side) {
  for (int lod = GR_LOD_256; lod <= GR_LOD_1; ++lod)
    if ((256 >> lod) == side) return lod;
  return -1;
}

// GR_ASPECT value of "w h", else -1.
int aspect_from_pair(int w, int h) {
  for (int k = 0; k <= 3; ++k) {
    if (h == 1 && w == (1 << k)) return GR_ASPECT_1x1 - k;
    if (w == 1 && h == (1 << k)) return GR_ASPECT_1x1 + k;
  }
  return -1;
}

// Host bytes of all levels large..small (no minimum sizes, no rounding); 0 if invalid.
uint32_t host_bytes(int largeLod, int smallLod, int aspect, int format) {
  if (largeLod < GR_LOD_256 || smallLod > GR_LOD_1 || largeLod > smallLod ||
      !tmu_format_valid(format))
    return 0;
  uint32_t total = 0;
  for (int l = largeLod; l <= smallLod; ++l) {
    int w = 0, h = 0;
    if (!tmu_level_size(l, aspect, &w, &h)) return 0;
    total += uint32_t(w) * uint32_t(h) * uint32_t(tmu_format_bytes(format));
  }
  return total;
}

// Parses the header; fills `out` and the size of the texel data only when all of it is valid.
bool parse_header(const HeaderLines &h, Gu3dfHeader *out, uint32_t *bytes) {
  const char *p = skip_spaces(h.line[0]);
  if (std::strncmp(p, "3df", 3) != 0) return false;
  int format = format_from_name(h.line[1]);
  int smallSide = 0, largeSide = 0, aw = 0, ah = 0;
  if (format < 0 || !parse_pair(h.line[2], "lod range:", &smallSide, &largeSide) ||
      !parse_pair(h.line[3], "aspect ratio:", &aw, &ah))
    return false;
  int smallLod = lod_from_side(smallSide), largeLod = lod_from_side(largeSide);
  int aspect = aspect_from_pair(aw, ah);
  if (smallLod < 0 || largeLod < 0 || largeLod > smallLod || aspect < 0) return false;
  uint32_t size = host_bytes(largeLod, smallLod, aspect, format);
  if (size == 0) return false;
  int width = 0, height = 0;
  tmu_level_size(largeLod, aspect, &width, &height);
  out->width = FxU32(width);
  out->height = FxU32(height);
  out->small_lod = smallLod;
  out->large_lod = largeLod;
  out->aspect_ratio = aspect;
  out->format = format;
  *bytes = size;
  return true;
}

bool read_exact(std::FILE *f, void *dst, size_t n) { return std::fread(dst, 1, n, f) == n; }

// The NCC table as stored in the file (16 Y, 12 I, 12 Q big-endian 16-bit words), into both the
// unpacked arrays (I and Q as raw 9-bit patterns) and the packed words the board receives.
bool read_ncc(std::FILE *f, GuNccTable *t) {
  uint8_t raw[80];
  if (!read_exact(f, raw, sizeof raw)) return false;
  auto word = [&](int i) { return uint32_t(raw[2 * i] << 8 | raw[2 * i + 1]); };
  for (int i = 0; i < 16; ++i) t->yRGB[i] = FxU8(word(i) & 0xFF);
  for (int k = 0; k < 4; ++k)
    for (int c = 0; c < 3; ++c) {
      t->iRGB[k][c] = FxI16(word(16 + 3 * k + c) & 0x1FF);
      t->qRGB[k][c] = FxI16(word(28 + 3 * k + c) & 0x1FF);
    }
  for (int k = 0; k < 4; ++k)
    t->packed_data[k] = uint32_t(t->yRGB[4 * k]) | uint32_t(t->yRGB[4 * k + 1]) << 8 |
                        uint32_t(t->yRGB[4 * k + 2]) << 16 | uint32_t(t->yRGB[4 * k + 3]) << 24;
  for (int k = 0; k < 4; ++k) {
    auto pack = [](const FxI16 *v) {
      return (uint32_t(v[0]) & 0x1FF) << 18 | (uint32_t(v[1]) & 0x1FF) << 9 |
             (uint32_t(v[2]) & 0x1FF);
    };
    t->packed_data[4 + k] = pack(t->iRGB[k]);
    t->packed_data[8 + k] = pack(t->qRGB[k]);
  }
  return true;
}

bool read_palette(std::FILE *f, GuTexPalette *pal) {
  uint8_t raw[1024];
  if (!read_exact(f, raw, sizeof raw)) return false;
  for (int i = 0; i < 256; ++i)
    pal->data[i] = uint32_t(raw[4 * i]) << 24 | uint32_t(raw[4 * i + 1]) << 16 |
                   uint32_t(raw[4 * i + 2]) << 8 | uint32_t(raw[4 * i + 3]);
  return true;
}

}  // namespace

FxBool tmu_3df_get_info(const char *filename, Gu3dfInfo *info) {
  if (!filename || !info) return FXFALSE;
  std::FILE *f = std::fopen(filename, "rb");
  if (!f) return FXFALSE;
  HeaderLines lines;
  Gu3dfHeader header;
  uint32_t bytes = 0;
  bool ok = read_header_lines(f, &lines) && parse_header(lines, &header, &bytes);
  std::fclose(f);
  if (!ok) return FXFALSE;
  info->header = header;
  info->mem_required = bytes;
  return FXTRUE;
}

FxBool tmu_3df_load(const char *filename, Gu3dfInfo *info) {
  if (!filename || !info || !info->data) return FXFALSE;
  const Gu3dfHeader &h = info->header;
  uint32_t bytes = host_bytes(h.large_lod, h.small_lod, h.aspect_ratio, h.format);
  if (bytes == 0 || bytes > info->mem_required) return FXFALSE;
  std::FILE *f = std::fopen(filename, "rb");
  if (!f) return FXFALSE;
  HeaderLines lines;
  bool ok = read_header_lines(f, &lines);
  if (ok && (h.format == GR_TEXFMT_YIQ_422 || h.format == GR_TEXFMT_AYIQ_8422))
    ok = read_ncc(f, &info->table.nccTable);
  else if (ok && (h.format == GR_TEXFMT_P_8 || h.format == GR_TEXFMT_AP_88))
    ok = read_palette(f, &info->table.palette);
  uint8_t *data = static_cast<uint8_t *>(info->data);
  ok = ok && read_exact(f, data, bytes);
  std::fclose(f);
  if (!ok) return FXFALSE;
  if (tmu_format_bytes(h.format) == 2) {
    for (uint32_t i = 0; i + 1 < bytes; i += 2) {
      FxU16 v = FxU16(data[i] << 8 | data[i + 1]);
      std::memcpy(data + i, &v, 2);
    }
  }
  return FXTRUE;
}

}  // namespace zvb
