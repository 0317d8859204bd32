// Stands for usr/include/sys/cdefs.h of the SDK: the marks of C declarations.
#pragma once

#ifdef __cplusplus
#define __BEGIN_DECLS extern "C" {
#define __END_DECLS }
#else
#define __BEGIN_DECLS
#define __END_DECLS
#endif
