// Stands for usr/include/fenv.h of the SDK: what ISO C names there.
#pragma once

typedef struct {
  unsigned long long fpsr;
  unsigned long long fpcr;
} fenv_t;
typedef unsigned short fexcept_t;

#define FE_INVALID 1
#define FE_DIVBYZERO 2
#define FE_OVERFLOW 4
#define FE_UNDERFLOW 8
#define FE_INEXACT 16
#define FE_ALL_EXCEPT 31
#define FE_TONEAREST 0
#ifdef __cplusplus
extern "C" {
#endif

int feclearexcept(int);
int fegetexceptflag(fexcept_t*, int);
int feraiseexcept(int);
int fesetexceptflag(const fexcept_t*, int);
int fetestexcept(int);
int fegetround(void);
int fesetround(int);
int fegetenv(fenv_t*);
int feholdexcept(fenv_t*);
int fesetenv(const fenv_t*);
int feupdateenv(const fenv_t*);

#ifdef __cplusplus
}
#endif
