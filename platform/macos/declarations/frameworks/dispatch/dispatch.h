// Stands for <dispatch/dispatch.h>
#pragma once

#include <os/object.h>
#include <stddef.h>
#include <stdint.h>
#include <sys/qos.h>
#include <sys/types.h>

extern "C" {
#pragma clang assume_nonnull begin

OS_OBJECT_DECL(dispatch_queue);
OS_OBJECT_DECL(dispatch_queue_attr);
OS_OBJECT_DECL(dispatch_source);
OS_OBJECT_DECL(dispatch_group);
OS_OBJECT_DECL(dispatch_semaphore);

typedef uint64_t dispatch_time_t;
typedef void (^dispatch_block_t)(void);
typedef void (*dispatch_function_t)(void* _Nullable);
typedef qos_class_t dispatch_qos_class_t;
typedef struct dispatch_source_type_s* dispatch_source_type_t;

#define DISPATCH_TIME_NOW 0ULL
#define DISPATCH_TIME_FOREVER (~0ULL)
#define NSEC_PER_SEC 1000000000ULL
#define NSEC_PER_MSEC 1000000ULL
#define DISPATCH_QUEUE_SERIAL ((dispatch_queue_attr_t _Nullable)nil)
#define DISPATCH_TARGET_QUEUE_DEFAULT ((dispatch_queue_t _Nullable)nil)

typedef unsigned long dispatch_autorelease_frequency_t;
enum : dispatch_autorelease_frequency_t {
  DISPATCH_AUTORELEASE_FREQUENCY_INHERIT = 0,
  DISPATCH_AUTORELEASE_FREQUENCY_WORK_ITEM = 1,
  DISPATCH_AUTORELEASE_FREQUENCY_NEVER = 2,
};

// The system's is an inline function of this name, or a macro: in both cases it is called like this.
dispatch_queue_t dispatch_get_main_queue(void);
dispatch_queue_t dispatch_get_global_queue(intptr_t identifier, uintptr_t flags);
dispatch_queue_t dispatch_queue_create(const char* _Nullable label, dispatch_queue_attr_t _Nullable attr)
    __attribute__((ns_returns_retained));
dispatch_queue_attr_t dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t _Nullable attr,
                                                              dispatch_qos_class_t qos, int relativePriority);
dispatch_queue_attr_t dispatch_queue_attr_make_with_autorelease_frequency(dispatch_queue_attr_t _Nullable attr,
                                                                          dispatch_autorelease_frequency_t frequency);
const char* dispatch_queue_get_label(dispatch_queue_t _Nullable queue);
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
void dispatch_async_f(dispatch_queue_t queue, void* _Nullable context, dispatch_function_t work);
void dispatch_sync(dispatch_queue_t queue, __attribute__((noescape)) dispatch_block_t block);
void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block);
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);
void dispatch_assert_queue(dispatch_queue_t queue);
void dispatch_queue_set_specific(dispatch_queue_t queue, const void* key, void* _Nullable context,
                                 dispatch_function_t _Nullable destructor);
void* _Nullable dispatch_get_specific(const void* key);

extern const struct dispatch_source_type_s _dispatch_source_type_timer;
extern const struct dispatch_source_type_s _dispatch_source_type_signal;
#define DISPATCH_SOURCE_TYPE_TIMER ((dispatch_source_type_t) & _dispatch_source_type_timer)
#define DISPATCH_SOURCE_TYPE_SIGNAL ((dispatch_source_type_t) & _dispatch_source_type_signal)
dispatch_source_t dispatch_source_create(dispatch_source_type_t type, uintptr_t handle, uintptr_t mask,
                                         dispatch_queue_t _Nullable queue) __attribute__((ns_returns_retained));
void dispatch_source_set_event_handler(dispatch_source_t source, dispatch_block_t _Nullable handler);
void dispatch_source_set_timer(dispatch_source_t source, dispatch_time_t start, uint64_t interval, uint64_t leeway);
void dispatch_source_cancel(dispatch_source_t source);
void dispatch_resume(NSObject* object);
void dispatch_activate(NSObject* object);
__attribute__((noreturn)) void dispatch_main(void);

dispatch_semaphore_t dispatch_semaphore_create(intptr_t value) __attribute__((ns_returns_retained));
intptr_t dispatch_semaphore_wait(dispatch_semaphore_t semaphore, dispatch_time_t timeout);
intptr_t dispatch_semaphore_signal(dispatch_semaphore_t semaphore);

#pragma clang assume_nonnull end
}
