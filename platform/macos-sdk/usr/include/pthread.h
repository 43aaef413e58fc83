#pragma once

#include <sched.h>
#include <sys/types.h>
#include <time.h>

#define __PTHREAD_TYPE(name, size) \
  typedef struct {                 \
    long __sig;                    \
    char __opaque[size];           \
  } name

typedef struct _opaque_pthread_t* pthread_t;
typedef unsigned long pthread_key_t;
__PTHREAD_TYPE(pthread_attr_t, 56);
__PTHREAD_TYPE(pthread_cond_t, 40);
__PTHREAD_TYPE(pthread_condattr_t, 8);
__PTHREAD_TYPE(pthread_mutex_t, 56);
__PTHREAD_TYPE(pthread_mutexattr_t, 8);
__PTHREAD_TYPE(pthread_once_t, 8);

// clang-format off
#define PTHREAD_COND_INITIALIZER {0x3CB0B1BB, {0}}
#define PTHREAD_MUTEX_INITIALIZER {0x32AAABA7, {0}}
#define PTHREAD_ONCE_INIT {0x30B1BCBA, {0}}
// clang-format on
#define PTHREAD_MUTEX_RECURSIVE 2

__BEGIN_DECLS
int pthread_cond_broadcast(pthread_cond_t*);
int pthread_cond_destroy(pthread_cond_t*);
int pthread_cond_init(pthread_cond_t*, const pthread_condattr_t*);
int pthread_cond_signal(pthread_cond_t*);
int pthread_cond_timedwait(pthread_cond_t*, pthread_mutex_t*, const struct timespec*);
int pthread_cond_wait(pthread_cond_t*, pthread_mutex_t*);
int pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
int pthread_detach(pthread_t);
int pthread_equal(pthread_t, pthread_t);
void* pthread_getspecific(pthread_key_t);
int pthread_join(pthread_t, void**);
int pthread_key_create(pthread_key_t*, void (*)(void*));
int pthread_key_delete(pthread_key_t);
int pthread_mutex_destroy(pthread_mutex_t*);
int pthread_mutex_init(pthread_mutex_t*, const pthread_mutexattr_t*);
int pthread_mutex_lock(pthread_mutex_t*);
int pthread_mutex_trylock(pthread_mutex_t*);
int pthread_mutex_unlock(pthread_mutex_t*);
int pthread_mutexattr_destroy(pthread_mutexattr_t*);
int pthread_mutexattr_init(pthread_mutexattr_t*);
int pthread_mutexattr_settype(pthread_mutexattr_t*, int);
int pthread_once(pthread_once_t*, void (*)(void));
pthread_t pthread_self(void);
int pthread_setspecific(pthread_key_t, const void*);
__END_DECLS
