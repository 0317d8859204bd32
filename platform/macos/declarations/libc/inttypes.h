// Stands for usr/include/inttypes.h of the SDK: what ISO C names there.
#pragma once

#include <stdint.h>

typedef struct {
  intmax_t quot;
  intmax_t rem;
} imaxdiv_t;
#ifdef __cplusplus
extern "C" {
#endif

intmax_t imaxabs(intmax_t);
imaxdiv_t imaxdiv(intmax_t, intmax_t);
intmax_t strtoimax(const char*, char**, int);
uintmax_t strtoumax(const char*, char**, int);
intmax_t wcstoimax(const wchar_t*, wchar_t**, int);
uintmax_t wcstoumax(const wchar_t*, wchar_t**, int);

#ifdef __cplusplus
}
#endif

#define PRId32 "d"
#define PRIu32 "u"
#define PRIx32 "x"
#define PRId64 "lld"
#define PRIu64 "llu"
#define PRIx64 "llx"
