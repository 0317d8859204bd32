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

typedef void (^dispatch_block_t)(void);
typedef qos_class_t dispatch_qos_class_t;

#define DISPATCH_QUEUE_SERIAL ((dispatch_queue_attr_t _Nullable)nil)

typedef unsigned long dispatch_autorelease_frequency_t;
enum : dispatch_autorelease_frequency_t {
  DISPATCH_AUTORELEASE_FREQUENCY_INHERIT = 0,
  DISPATCH_AUTORELEASE_FREQUENCY_WORK_ITEM = 1,
  DISPATCH_AUTORELEASE_FREQUENCY_NEVER = 2,
};

// The system's is an inline function of this name, or a macro: in both cases it is called like this.
dispatch_queue_t dispatch_get_main_queue(void);
dispatch_queue_t dispatch_queue_create(const char* _Nullable label, dispatch_queue_attr_t _Nullable attr)
    __attribute__((ns_returns_retained));
dispatch_queue_attr_t dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t _Nullable attr,
                                                              dispatch_qos_class_t qos, int relativePriority);
dispatch_queue_attr_t dispatch_queue_attr_make_with_autorelease_frequency(dispatch_queue_attr_t _Nullable attr,
                                                                          dispatch_autorelease_frequency_t frequency);
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
void dispatch_sync(dispatch_queue_t queue, __attribute__((noescape)) dispatch_block_t block);

#pragma clang assume_nonnull end
}
