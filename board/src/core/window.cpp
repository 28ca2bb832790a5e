// window.cpp: the live window (ZVGL_BOARD_WINDOW=1): on Linux an SDL2 window per board showing
// its displayed buffer after each swap, through the board's gamma table.
#include "core/board.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#if defined(ZVGL_HAVE_SDL2)
#include <SDL2/SDL.h>
#endif

namespace zvb {

#if defined(ZVGL_HAVE_SDL2)

namespace {

struct LiveWindow {
  SDL_Window *window;
  SDL_Renderer *renderer;
  SDL_Texture *texture;
  uint8_t gamma[256];
  uint32_t *pixels;
};

}  // namespace

void live_window_open(Board &b) {
  if (!glide().cfg.window || b.liveWindow) return;
  if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) {
    std::fprintf(stderr, "glide2x: no live window: %s\n", SDL_GetError());
    return;
  }
  LiveWindow *w = static_cast<LiveWindow *>(std::calloc(1, sizeof(LiveWindow)));
  if (!w) return;
  char title[64];
  std::snprintf(title, sizeof title, "glide2x board %d", b.index);
  w->window = SDL_CreateWindow(title, SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED,
                               b.px.width, b.px.height, 0);
  w->renderer = w->window ? SDL_CreateRenderer(w->window, -1, 0) : nullptr;
  w->texture = w->renderer ? SDL_CreateTexture(w->renderer, SDL_PIXELFORMAT_ARGB8888,
                                               SDL_TEXTUREACCESS_STREAMING, b.px.width, b.px.height)
                           : nullptr;
  w->pixels = static_cast<uint32_t *>(
      std::malloc(sizeof(uint32_t) * static_cast<size_t>(b.px.width) * static_cast<size_t>(b.px.height)));
  if (!w->texture || !w->pixels) {
    std::fprintf(stderr, "glide2x: no live window: %s\n", SDL_GetError());
    b.liveWindow = w;
    live_window_close(b);
    return;
  }
  b.liveWindow = w;
}

// Shows the displayed buffer (board thread, at each swap). The gamma table is the video
// output's: stored pixels are not changed by it.
void live_window_show(Board &b) {
  LiveWindow *w = static_cast<LiveWindow *>(b.liveWindow);
  if (!w || !w->texture) return;
  const float g = b.gamma > 0 ? b.gamma : 1.0f;
  for (int i = 0; i < 256; ++i)
    w->gamma[i] = static_cast<uint8_t>(std::floor(std::pow(i / 255.0, 1.0 / g) * 255.0 + 0.5));
  const uint16_t *src = b.px.colour[b.shown];
  const size_t n = static_cast<size_t>(b.px.width) * static_cast<size_t>(b.px.height);
  for (size_t i = 0; i < n; ++i) {
    const uint32_t v = src[i], r = v >> 11, gr = (v >> 5) & 63, bl = v & 31;
    w->pixels[i] = 0xFF000000u | static_cast<uint32_t>(w->gamma[r << 3 | r >> 2]) << 16 |
                   static_cast<uint32_t>(w->gamma[gr << 2 | gr >> 4]) << 8 | w->gamma[bl << 3 | bl >> 2];
  }
  SDL_UpdateTexture(w->texture, nullptr, w->pixels, b.px.width * 4);
  SDL_RenderCopy(w->renderer, w->texture, nullptr, nullptr);
  SDL_RenderPresent(w->renderer);
  SDL_Event e;
  while (SDL_PollEvent(&e)) {
  }
}

void live_window_close(Board &b) {
  LiveWindow *w = static_cast<LiveWindow *>(b.liveWindow);
  if (!w) return;
  if (w->texture) SDL_DestroyTexture(w->texture);
  if (w->renderer) SDL_DestroyRenderer(w->renderer);
  if (w->window) SDL_DestroyWindow(w->window);
  std::free(w->pixels);
  std::free(w);
  b.liveWindow = nullptr;
  SDL_QuitSubSystem(SDL_INIT_VIDEO);
}

#else

// Builds without SDL2 show no live window.
void live_window_open(Board &) {}
void live_window_show(Board &) {}
void live_window_close(Board &) {}

#endif

}  // namespace zvb
