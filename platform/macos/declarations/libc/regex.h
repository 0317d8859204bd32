// Stands for usr/include/regex.h of the SDK: what POSIX names there.
#pragma once

#include <sys/types.h>

typedef off_t regoff_t;
typedef struct {
  int re_magic;
  size_t re_nsub;
  const char* re_endp;
  struct re_guts* re_g;
} regex_t;
typedef struct {
  regoff_t rm_so;
  regoff_t rm_eo;
} regmatch_t;

#define REG_EXTENDED 1
#define REG_NOSUB 4
#ifdef __cplusplus
extern "C" {
#endif

int regcomp(regex_t*, const char*, int);
int regexec(const regex_t*, const char*, size_t, regmatch_t*, int);
void regfree(regex_t*);

#ifdef __cplusplus
}
#endif
