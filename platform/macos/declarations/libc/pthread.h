// Stands for usr/include/pthread.h of the SDK: what POSIX names there, as far as the standard library and the program
// ask.
#pragma once

#include <sched.h>
#include <sys/types.h>
#include <time.h>

typedef struct QuillmereThread* pthread_t;
typedef unsigned long pthread_key_t;
typedef struct {
  long signature;
  char opaque[56];
} pthread_mutex_t;
typedef struct {
  long signature;
  char opaque[40];
} pthread_cond_t;
typedef struct {
  long signature;
  char opaque[8];
} pthread_once_t;
typedef struct {
  long signature;
  char opaque[8];
} pthread_mutexattr_t;
typedef struct {
  long signature;
  char opaque[8];
} pthread_condattr_t;
typedef struct {
  long signature;
  char opaque[56];
} pthread_attr_t;

#define PTHREAD_MUTEX_INITIALIZER {0x32AAABA7, {0}}
#define PTHREAD_COND_INITIALIZER {0x3CB0B1BB, {0}}
#define PTHREAD_ONCE_INIT {0x30B1BCBA, {0}}
#define PTHREAD_MUTEX_RECURSIVE 2
#ifdef __cplusplus
extern "C" {
#endif

int pthread_mutexattr_init(pthread_mutexattr_t*);
int pthread_mutexattr_settype(pthread_mutexattr_t*, int);
int pthread_mutexattr_destroy(pthread_mutexattr_t*);
int pthread_mutex_init(pthread_mutex_t*, const pthread_mutexattr_t*);
int pthread_mutex_lock(pthread_mutex_t*);
int pthread_mutex_trylock(pthread_mutex_t*);
int pthread_mutex_unlock(pthread_mutex_t*);
int pthread_mutex_destroy(pthread_mutex_t*);
int pthread_cond_signal(pthread_cond_t*);
int pthread_cond_broadcast(pthread_cond_t*);
int pthread_cond_wait(pthread_cond_t*, pthread_mutex_t*);
int pthread_cond_timedwait(pthread_cond_t*, pthread_mutex_t*, const struct timespec*);
int pthread_cond_timedwait_relative_np(pthread_cond_t*, pthread_mutex_t*, const struct timespec*);
int pthread_cond_destroy(pthread_cond_t*);
int pthread_once(pthread_once_t*, void (*)(void));
int pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
int pthread_join(pthread_t, void**);
int pthread_detach(pthread_t);
pthread_t pthread_self(void);
int pthread_equal(pthread_t, pthread_t);
int pthread_main_np(void);
int pthread_setname_np(const char*);
int pthread_getname_np(pthread_t, char*, size_t);
int pthread_key_create(pthread_key_t*, void (*)(void*));
int pthread_key_delete(pthread_key_t);
void* pthread_getspecific(pthread_key_t);
int pthread_setspecific(pthread_key_t, const void*);

#ifdef __cplusplus
}
#endif
