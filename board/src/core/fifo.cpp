// fifo.cpp: the command FIFO, the board thread that empties it, and the display: swaps wait
// for a simulated vertical retrace at the window's refresh rate, and a pending-swap queue
// counts what the host has asked for and the screen has not shown yet.
//
// Rendering happens only in execute(), in FIFO order, on one thread at a time, so that the
// pixels are the same whether commands run on the board thread or inline (sync mode).
#include "core/board.h"

#include <cstdlib>
#include <cstring>

namespace zvb {

namespace {

constexpr int kRefreshHz[9] = {60, 70, 72, 75, 80, 90, 100, 85, 120};

// Retrace index at or after time `t`.
int64_t retrace_at_or_after(const Board &b, uint64_t t) {
  if (t <= b.retraceOrigin) return 0;
  return static_cast<int64_t>((t - b.retraceOrigin + b.retracePeriod - 1) / b.retracePeriod);
}

// Shows every pending swap whose time has come, in order (the mutex is held). A swap that
// never completes holds up the ones behind it.
void complete_due_locked(Board &b) {
  const uint64_t now = zvgl::clock_ns();
  int done = 0;
  while (done < b.displayCount) {
    const Board::PendingDisplay &d = b.display[done];
    if (d.never || now < d.due) break;
    b.shown = d.buffer;
    b.px.front = d.buffer;
    ++b.swaps;
    ++done;
    // The frame is written out and shown before the swap counts as done, so that a host
    // that waits for its swaps finds the capture file and the window complete.
    capture_frame(b);
    live_window_show(b);
    b.pendingSwaps.fetch_sub(1);
  }
  if (done) {
    std::memmove(b.display, b.display + done, sizeof b.display[0] * (b.displayCount - done));
    b.displayCount -= done;
    zvgl::cond_broadcast(b.progress);
  }
}

// Time of the next display change to wait for, or 0 when none can happen by itself.
uint64_t next_due_locked(const Board &b) {
  if (b.displayCount == 0 || b.display[0].never) return 0;
  return b.display[0].due;
}

// Waits on `c` until woken or the next pending swap is due (the mutex is held). Only the
// thread that completes swaps (the board thread, or the host in sync mode) needs the time-out;
// a host waiting on a board thread is woken by it.
void wait_for_event_locked(Board &b, zvgl::Cond *c) {
  const uint64_t due = c == b.progress && b.thread ? 0 : next_due_locked(b);
  if (!due) {
    zvgl::cond_wait(c, b.mu);
    return;
  }
  const uint64_t now = zvgl::clock_ns();
  if (due > now) zvgl::cond_wait_ns(c, b.mu, due - now);
}

// True when `buffer` is on the screen or waiting to be shown.
bool buffer_busy_locked(const Board &b, int buffer) {
  if (b.shown == buffer) return true;
  for (int i = 0; i < b.displayCount; ++i)
    if (b.display[i].buffer == buffer) return true;
  return false;
}

// Runs a swap command (the mutex is held): the back buffer goes to the display queue with
// the time it may be shown, the next buffer of the rotation becomes the back buffer, and
// the command ends once that buffer is free (at once with three buffers and a free third,
// else when the swap is shown). Returns early when the window closes.
void run_swap_locked(Board &b, Command &c) {
  if (!c.i[5]) {
    const int interval = c.i[0];
    const uint64_t now = zvgl::clock_ns();
    Board::PendingDisplay d{b.px.back, now, 0};
    const int delayMs = glide().faultSwapDelay[b.index].load();
    if (delayMs < 0) {
      d.never = 1;
    } else if (delayMs > 0) {
      d.due = now + static_cast<uint64_t>(delayMs) * 1000000u;
    } else if (interval > 0) {
      int64_t k = b.lastSwapRetrace + interval;
      const int64_t earliest = retrace_at_or_after(b, now);
      if (k < earliest) k = earliest;
      b.lastSwapRetrace = k;
      d.due = b.retraceOrigin + static_cast<uint64_t>(k) * b.retracePeriod;
    } else {
      b.lastSwapRetrace = now > b.retraceOrigin
                              ? static_cast<int64_t>((now - b.retraceOrigin) / b.retracePeriod)
                              : 0;
    }
    if (b.displayCount < kMaxPendingSwaps + 1) b.display[b.displayCount++] = d;
    if (b.px.nColBuffers > 1) b.px.back = (b.px.back + 1) % b.px.nColBuffers;
    c.i[5] = 1;
  }
  for (;;) {
    complete_due_locked(b);
    if (b.stop.load()) return;
    // In sync mode nobody else could show a swap that never completes: drawing goes on.
    if (!b.thread && b.displayCount > 0 && b.display[0].never) return;
    // A single-buffered board draws on the screen: nothing to wait for.
    if (b.px.nColBuffers < 2 || !buffer_busy_locked(b, b.px.back)) return;
    wait_for_event_locked(b, b.wake);
  }
}

// Frees what a command owns once it has run or is dropped.
void release_command(Command &c) {
  if (c.op == OP_LFB_WRITE && c.blob) {
    LfbWrite *w = static_cast<LfbWrite *>(c.blob);
    std::free(w->written);
    std::free(w->rgba);
    std::free(w->depth);
  }
  std::free(c.blob);
  c.blob = nullptr;
}

// Wakes hosts waiting for room, idleness or a shown swap.
void notify_hosts(Board &b) {
  if (!b.hostWaiting.load()) return;
  zvgl::mutex_lock(b.mu);
  zvgl::cond_broadcast(b.progress);
  zvgl::mutex_unlock(b.mu);
}

// The board thread: takes commands from the FIFO in order and runs them; between commands
// and while idle it shows the swaps that have become due. The FIFO itself needs no lock: one
// host writes slots and publishes them through `head`, this thread frees them through `tail`.
// Sleeping uses the mutex: the thread announces it in `boardSleeping` and looks at `head`
// once more before it waits, and the host looks at `boardSleeping` after publishing, so one
// of the two always sees the other.
void board_thread(void *arg) {
  Board &b = *static_cast<Board *>(arg);
  uint64_t tail = b.tail.load();
  uint64_t lastDisplayCheck = 0;
  for (;;) {
    if (b.stop.load()) break;
    if (tail == b.head.load()) {
      // A host producing commands usually sends the next one within microseconds: wait for it
      // briefly before going to sleep, which would cost the host a wake-up call.
      for (int spin = 0; spin < 256 && tail == b.head.load(std::memory_order_relaxed); ++spin)
        __builtin_ia32_pause();
      if (tail != b.head.load()) continue;
      zvgl::mutex_lock(b.mu);
      complete_due_locked(b);
      b.boardSleeping.store(1);
      if (tail == b.head.load() && !b.stop.load()) wait_for_event_locked(b, b.wake);
      b.boardSleeping.store(0);
      zvgl::mutex_unlock(b.mu);
      continue;
    }
    Command &c = b.ring[tail % kFifoSize];
    if (c.op == OP_SWAP) {
      zvgl::mutex_lock(b.mu);
      run_swap_locked(b, c);
      zvgl::mutex_unlock(b.mu);
      if (b.stop.load()) break;
    } else {
      execute(b, c);
      // Swaps due while the board draws are shown between commands, checked about once a
      // millisecond.
      if (b.displayCount > 0) {
        const uint64_t now = zvgl::clock_ns();
        if (now - lastDisplayCheck > 1000000u) {
          lastDisplayCheck = now;
          zvgl::mutex_lock(b.mu);
          complete_due_locked(b);
          zvgl::mutex_unlock(b.mu);
        }
      }
    }
    release_command(c);
    b.tail.store(++tail);
    notify_hosts(b);
  }
}

}  // namespace

// Prepares the FIFO and display of a board whose window has just opened, and starts its
// thread unless commands run synchronously.
int board_start(Board &b) {
  b.mu = zvgl::mutex_create();
  b.wake = zvgl::cond_create();
  b.progress = zvgl::cond_create();
  b.ring = static_cast<Command *>(std::calloc(kFifoSize, sizeof(Command)));
  if (!b.mu || !b.wake || !b.progress || !b.ring) return 0;
  b.head.store(0);
  b.tail.store(0);
  b.stop.store(0);
  b.boardSleeping.store(0);
  b.hostWaiting.store(0);
  b.pendingSwaps.store(0);
  b.displayCount = 0;
  b.shown = b.px.front;
  b.retraceOrigin = zvgl::clock_ns();
  const int hz = b.refresh >= 0 && b.refresh < 9 ? kRefreshHz[b.refresh] : 60;
  b.hz = hz;
  b.retracePeriod = 1000000000u / static_cast<uint64_t>(hz);
  b.lastSwapRetrace = 0;
  b.swaps = 0;
  b.thread = nullptr;
  if (!glide().cfg.sync) {
    b.thread = zvgl::thread_start(board_thread, &b);
    if (!b.thread) return 0;
  }
  return 1;
}

// Ends the board's work at window close: lets what is queued run and the pending swaps be
// shown (unless a swap can never complete), then drops the rest and ends the thread.
void board_stop(Board &b) {
  if (b.mu) {
    zvgl::mutex_lock(b.mu);
    b.hostWaiting.fetch_add(1);
    for (;;) {
      if (!b.thread) complete_due_locked(b);
      if (b.displayCount > 0 && b.display[0].never) break;
      if (b.tail.load() == b.head.load() && b.displayCount == 0) break;
      if (!b.thread && b.displayCount == 0) break;
      wait_for_event_locked(b, b.progress);
    }
    b.hostWaiting.fetch_sub(1);
    b.stop.store(1);
    zvgl::cond_broadcast(b.wake);
    zvgl::mutex_unlock(b.mu);
  }
  zvgl::thread_join(b.thread);
  b.thread = nullptr;
  if (b.ring) {
    for (uint64_t i = b.tail.load(); i < b.head.load(); ++i) release_command(b.ring[i % kFifoSize]);
    std::free(b.ring);
  }
  b.ring = nullptr;
  b.head.store(0);
  b.tail.store(0);
  b.displayCount = 0;
  b.pendingSwaps.store(0);
  zvgl::cond_destroy(b.wake);
  zvgl::cond_destroy(b.progress);
  zvgl::mutex_destroy(b.mu);
  b.wake = b.progress = nullptr;
  b.mu = nullptr;
}

// A free FIFO slot for the next command; waits while the FIFO is full. In sync mode the one
// slot is reused for every command.
Command *fifo_reserve(Board &b) {
  if (!b.thread) {
    Command &c = b.ring[0];
    std::memset(&c, 0, sizeof c);
    return &c;
  }
  const uint64_t head = b.head.load(std::memory_order_relaxed);
  if (head - b.tail.load() >= static_cast<uint64_t>(kFifoSize)) {
    zvgl::mutex_lock(b.mu);
    b.hostWaiting.fetch_add(1);
    while (head - b.tail.load() >= static_cast<uint64_t>(kFifoSize) && !b.stop.load())
      zvgl::cond_wait(b.progress, b.mu);
    b.hostWaiting.fetch_sub(1);
    zvgl::mutex_unlock(b.mu);
  }
  Command &c = b.ring[head % kFifoSize];
  std::memset(&c, 0, sizeof c);
  return &c;
}

// Hands the reserved command to the board thread, or runs it now in sync mode.
void fifo_commit(Board &b) {
  if (!b.thread) {
    Command &c = b.ring[0];
    if (c.op == OP_SWAP) {
      zvgl::mutex_lock(b.mu);
      run_swap_locked(b, c);
      zvgl::mutex_unlock(b.mu);
    } else {
      execute(b, c);
    }
    release_command(c);
    return;
  }
  b.head.store(b.head.load(std::memory_order_relaxed) + 1);
  if (b.boardSleeping.load()) {
    zvgl::mutex_lock(b.mu);
    zvgl::cond_signal(b.wake);
    zvgl::mutex_unlock(b.mu);
  }
}

// Returns once every queued command has run (the board is idle).
void board_idle(Board &b) {
  if (!b.thread || b.tail.load() == b.head.load()) return;
  zvgl::mutex_lock(b.mu);
  b.hostWaiting.fetch_add(1);
  while (b.tail.load() != b.head.load() && !b.stop.load()) zvgl::cond_wait(b.progress, b.mu);
  b.hostWaiting.fetch_sub(1);
  zvgl::mutex_unlock(b.mu);
}

// Shows the swaps that are due. The board thread does this by itself; in sync mode the
// host's calls (grBufferNumPending, grBufferSwap, ...) drive it.
void board_poll_display(Board &b) {
  if (!b.mu || b.thread) return;
  zvgl::mutex_lock(b.mu);
  complete_due_locked(b);
  zvgl::mutex_unlock(b.mu);
}

// Waits while the hardware's swap counter is full (7 swaps pending), as Glide does before
// queueing another swap.
void swap_wait_room(Board &b) {
  zvgl::mutex_lock(b.mu);
  b.hostWaiting.fetch_add(1);
  for (;;) {
    if (!b.thread) complete_due_locked(b);
    if (b.pendingSwaps.load() < kMaxPendingSwaps || b.stop.load()) break;
    if (b.displayCount > 0 && b.display[0].never && !b.thread) break;
    wait_for_event_locked(b, b.progress);
  }
  b.hostWaiting.fetch_sub(1);
  zvgl::mutex_unlock(b.mu);
}

}  // namespace zvb
