// Stands for <os/log.h>
#pragma once

#include <os/object.h>
#include <stdint.h>

extern "C" {
#pragma clang assume_nonnull begin

OS_OBJECT_DECL(os_log);

typedef uint8_t os_log_type_t;
enum : os_log_type_t {
  OS_LOG_TYPE_DEFAULT = 0x00,
  OS_LOG_TYPE_INFO = 0x01,
  OS_LOG_TYPE_DEBUG = 0x02,
  OS_LOG_TYPE_ERROR = 0x10,
  OS_LOG_TYPE_FAULT = 0x11,
};

os_log_t os_log_create(const char* subsystem, const char* category) __attribute__((ns_returns_retained));
// The system's is a macro, which wants a literal for a format and keeps its arguments for later. This one takes the
// same arguments and checks them.
void quillmere_os_log(os_log_t log, os_log_type_t type, const char* format, ...) __attribute__((format(os_log, 3, 4)));
#define os_log_with_type(log, type, format, ...) quillmere_os_log(log, type, "" format, ##__VA_ARGS__)

#pragma clang assume_nonnull end
}
