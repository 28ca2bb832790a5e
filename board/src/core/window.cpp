// window.cpp: the live window (ZVGL_BOARD_WINDOW=1) showing each board's displayed buffer after
// every swap, through the board's gamma table: an SDL2 window per board on Linux; on Windows
// GDI drawing into the window handed to grSstWinOpen (none when that handle is 0).
#include "core/board.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "support/present/present.h"

#if defined(ZVGL_HAVE_SDL2)
#include <SDL2/SDL.h>
#endif

namespace zvb {

namespace {

struct LiveWindow {
  uint32_t *pixels;   // the displayed buffer as 0xAARRGGBB after gamma
  float gamma;        // of the table below
  uint8_t table[256];
#if defined(ZVGL_HAVE_SDL2)
  SDL_Window *window;
  SDL_Renderer *renderer;
  SDL_Texture *texture;
#endif
};

// Converts the displayed buffer through the gamma table: the video output's view of the
// pixels (stored pixels are not changed by gamma).
void convert(Board &b, LiveWindow &w) {
  const float g = b.gamma > 0 ? b.gamma : 1.0f;
  if (g != w.gamma) {
    for (int i = 0; i < 256; ++i)
      w.table[i] = static_cast<uint8_t>(std::floor(std::pow(i / 255.0, 1.0 / g) * 255.0 + 0.5));
    w.gamma = g;
  }
  const uint16_t *src = b.px.colour[b.shown];
  const size_t n = static_cast<size_t>(b.px.width) * static_cast<size_t>(b.px.height);
  for (size_t i = 0; i < n; ++i) {
    const uint32_t v = src[i], r = v >> 11, gr = (v >> 5) & 63, bl = v & 31;
    w.pixels[i] = 0xFF000000u | static_cast<uint32_t>(w.table[r << 3 | r >> 2]) << 16 |
                  static_cast<uint32_t>(w.table[gr << 2 | gr >> 4]) << 8 | w.table[bl << 3 | bl >> 2];
  }
}

}  // namespace

void live_window_open(Board &b) {
  if (!glide().cfg.window || b.liveWindow) return;
  LiveWindow *w = static_cast<LiveWindow *>(std::calloc(1, sizeof(LiveWindow)));
  if (!w) return;
  w->pixels = static_cast<uint32_t *>(
      std::malloc(sizeof(uint32_t) * static_cast<size_t>(b.px.width) * static_cast<size_t>(b.px.height)));
  b.liveWindow = w;
  if (!w->pixels) {
    live_window_close(b);
    return;
  }
#if defined(ZVGL_HAVE_SDL2)
  if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) {
    std::fprintf(stderr, "glide2x: no live window: %s\n", SDL_GetError());
    std::free(w->pixels);
    std::free(w);
    b.liveWindow = nullptr;
    return;
  }
  char title[64];
  std::snprintf(title, sizeof title, "glide2x board %d", b.index);
  w->window = SDL_CreateWindow(title, SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, b.px.width,
                               b.px.height, 0);
  w->renderer = w->window ? SDL_CreateRenderer(w->window, -1, SDL_RENDERER_SOFTWARE) : nullptr;
  w->texture = w->renderer ? SDL_CreateTexture(w->renderer, SDL_PIXELFORMAT_ARGB8888,
                                               SDL_TEXTUREACCESS_STREAMING, b.px.width, b.px.height)
                           : nullptr;
  if (!w->texture) {
    std::fprintf(stderr, "glide2x: no live window: %s\n", SDL_GetError());
    live_window_close(b);
  }
#endif
}

void live_window_show(Board &b) {
  LiveWindow *w = static_cast<LiveWindow *>(b.liveWindow);
  if (!w || !b.px.colour[b.shown]) return;
  convert(b, *w);
#if defined(ZVGL_HAVE_SDL2)
  SDL_UpdateTexture(w->texture, nullptr, w->pixels, b.px.width * 4);
  SDL_RenderCopy(w->renderer, w->texture, nullptr, nullptr);
  SDL_RenderPresent(w->renderer);
  SDL_Event e;
  while (SDL_PollEvent(&e)) {
  }
#else
  zvgl::present_to_window(b.hwnd, w->pixels, b.px.width, b.px.height);
#endif
}

void live_window_close(Board &b) {
  LiveWindow *w = static_cast<LiveWindow *>(b.liveWindow);
  if (!w) return;
#if defined(ZVGL_HAVE_SDL2)
  if (w->texture) SDL_DestroyTexture(w->texture);
  if (w->renderer) SDL_DestroyRenderer(w->renderer);
  if (w->window) SDL_DestroyWindow(w->window);
  SDL_QuitSubSystem(SDL_INIT_VIDEO);
#endif
  std::free(w->pixels);
  std::free(w);
  b.liveWindow = nullptr;
}

}  // namespace zvb
