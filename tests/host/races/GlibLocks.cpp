// What the thread sanitizer has to know of GLib. Debian's GLib is not instrumented, and its locks are made of the
// kernel's futexes rather than of POSIX threads: to the sanitizer they do not exist, and whatever they guard would
// look like a race. Here the ones that GStreamer takes are put before GLib's own (the program comes first where names
// are looked up), and tell the sanitizer. GLib's recursive and shared locks are POSIX ones, which it sees by itself.
//
// Nothing else is hidden: a race between two places of our code is reported, whichever threads they are called on.

#include <glib.h>

#include <dlfcn.h>

#include <cstdlib>

#include <sanitizer/tsan_interface.h>

namespace {

/// GLib's own function of that name.
template <typename Function>
Function* own(const char* name) {
  void* const found = dlsym(RTLD_NEXT, name);
  if (found == nullptr) std::abort();
  return reinterpret_cast<Function*>(found);
}

void tellBeforeLock(GMutex* mutex) {
  __tsan_mutex_pre_lock(mutex, 0);
}
void tellLocked(GMutex* mutex) {
  __tsan_mutex_post_lock(mutex, 0, 0);
}
void tellBeforeUnlock(GMutex* mutex) {
  __tsan_mutex_pre_unlock(mutex, 0);
}
void tellUnlocked(GMutex* mutex) {
  __tsan_mutex_post_unlock(mutex, 0);
}

/// Who waits gives the lock away and takes it again. (That the waking comes from the signal follows from the lock.)
template <typename Wait>
auto waitWithout(GMutex* mutex, Wait wait) {
  tellBeforeUnlock(mutex);
  tellUnlocked(mutex);
  const auto result = wait();
  tellBeforeLock(mutex);
  tellLocked(mutex);
  return result;
}

}  // namespace

extern "C" {

/// What libraries do that are not instrumented is not judged: half of it cannot be seen. That they make threads, and
/// take POSIX locks, counts. Of deadlocks only GStreamer's own orders of its locks would be told.
const char* __tsan_default_options() {
  return "ignore_noninstrumented_modules=1:detect_deadlocks=0:halt_on_error=0:exitcode=66:history_size=4";
}

void g_mutex_lock(GMutex* mutex) {
  static auto* const lock = own<void(GMutex*)>("g_mutex_lock");
  tellBeforeLock(mutex);
  lock(mutex);
  tellLocked(mutex);
}

gboolean g_mutex_trylock(GMutex* mutex) {
  static auto* const tryLock = own<gboolean(GMutex*)>("g_mutex_trylock");
  __tsan_mutex_pre_lock(mutex, __tsan_mutex_try_lock);
  const gboolean locked = tryLock(mutex);
  __tsan_mutex_post_lock(mutex, locked ? __tsan_mutex_try_lock : __tsan_mutex_try_lock | __tsan_mutex_try_lock_failed,
                         0);
  return locked;
}

void g_mutex_unlock(GMutex* mutex) {
  static auto* const unlock = own<void(GMutex*)>("g_mutex_unlock");
  tellBeforeUnlock(mutex);
  unlock(mutex);
  tellUnlocked(mutex);
}

void g_mutex_clear(GMutex* mutex) {
  static auto* const clear = own<void(GMutex*)>("g_mutex_clear");
  clear(mutex);
  __tsan_mutex_destroy(mutex, 0);
}

void g_cond_wait(GCond* condition, GMutex* mutex) {
  static auto* const wait = own<void(GCond*, GMutex*)>("g_cond_wait");
  waitWithout(mutex, [&] { return wait(condition, mutex), 0; });
}

gboolean g_cond_wait_until(GCond* condition, GMutex* mutex, gint64 time) {
  static auto* const wait = own<gboolean(GCond*, GMutex*, gint64)>("g_cond_wait_until");
  return waitWithout(mutex, [&] { return wait(condition, mutex, time); });
}

/// The macros of these names would take their place in what follows.
#undef g_once_init_enter
#undef g_once_init_leave

gboolean g_once_init_enter(volatile void* place) {
  static auto* const enter = own<gboolean(volatile void*)>("g_once_init_enter");
  const gboolean isFirst = enter(place);
  __tsan_acquire(const_cast<void*>(place));
  return isFirst;
}

void g_once_init_leave(volatile void* place, gsize result) {
  static auto* const leave = own<void(volatile void*, gsize)>("g_once_init_leave");
  __tsan_release(const_cast<void*>(place));
  leave(place, result);
}

}  // extern "C"
