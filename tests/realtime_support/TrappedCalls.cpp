// The C library's memory and lock functions, taken over by this program: what calls them by name comes here first.
// An inlined spin lock or an allocator of one's own would not; the other tests beside this one see those.
#include "TrappedCalls.h"

#include <dlfcn.h>
#include <pthread.h>
#include <semaphore.h>

#include <cstddef>

// NOLINTBEGIN(bugprone-reserved-identifier): the C library's own names for what is taken over here.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

// Plain thread-local words: reading them must not allocate.
thread_local bool isTrapping = false;
thread_local int trappedCount = 0;
thread_local const char* firstTrapped = nullptr;

void note(const char* function) {
  if (!isTrapping) return;
  if (trappedCount++ == 0) firstTrapped = function;
}

template <typename Function>
Function next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
  note("malloc");
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
  note("calloc");
  return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
  note("realloc");
  return __libc_realloc(memory, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  note("aligned_alloc");
  return __libc_memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  note("posix_memalign");
  *memory = __libc_memalign(alignment, size);
  return *memory == nullptr ? 12 : 0;
}

void free(void* memory) {
  note("free");
  __libc_free(memory);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
  note("pthread_mutex_lock");
  static const auto real = next<int (*)(pthread_mutex_t*)>("pthread_mutex_lock");
  return real(mutex);
}

int pthread_mutex_trylock(pthread_mutex_t* mutex) noexcept {
  note("pthread_mutex_trylock");
  static const auto real = next<int (*)(pthread_mutex_t*)>("pthread_mutex_trylock");
  return real(mutex);
}

int pthread_rwlock_rdlock(pthread_rwlock_t* lock) noexcept {
  note("pthread_rwlock_rdlock");
  static const auto real = next<int (*)(pthread_rwlock_t*)>("pthread_rwlock_rdlock");
  return real(lock);
}

int pthread_rwlock_wrlock(pthread_rwlock_t* lock) noexcept {
  note("pthread_rwlock_wrlock");
  static const auto real = next<int (*)(pthread_rwlock_t*)>("pthread_rwlock_wrlock");
  return real(lock);
}

int sem_wait(sem_t* semaphore) {
  note("sem_wait");
  static const auto real = next<int (*)(sem_t*)>("sem_wait");
  return real(semaphore);
}

}  // extern "C"

namespace quillmere {

TrappedCalls::TrappedCalls() {
  trappedCount = 0;
  firstTrapped = nullptr;
  isTrapping = true;
}

TrappedCalls::~TrappedCalls() { isTrapping = false; }

int TrappedCalls::count() { return trappedCount; }

const char* TrappedCalls::first() { return firstTrapped; }

}  // namespace quillmere
