// Stands for usr/include/strings.h of the SDK: what POSIX names there.
#pragma once

#include <stddef.h>
#ifdef __cplusplus
extern "C" {
#endif

int strcasecmp(const char*, const char*);
int strncasecmp(const char*, const char*, size_t);

#ifdef __cplusplus
}
#endif
