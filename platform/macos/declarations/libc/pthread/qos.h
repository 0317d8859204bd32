// Stands for usr/include/pthread/qos.h of the SDK
#pragma once

#include <sys/qos.h>

#ifdef __cplusplus
extern "C" {
#endif

int pthread_set_qos_class_self_np(qos_class_t, int relativePriority);

#ifdef __cplusplus
}
#endif
