// Stands for usr/include/stdlib.h of the SDK: what ISO C and POSIX name there.
#pragma once

#include <sys/types.h>

typedef struct {
  int quot;
  int rem;
} div_t;
typedef struct {
  long quot;
  long rem;
} ldiv_t;
typedef struct {
  long long quot;
  long long rem;
} lldiv_t;

#define EXIT_SUCCESS 0
#define EXIT_FAILURE 1
#define RAND_MAX 0x7fffffff
#define MB_CUR_MAX (___mb_cur_max())
#ifdef __cplusplus
extern "C" {
#endif

int ___mb_cur_max(void);
void* malloc(size_t);
void* calloc(size_t, size_t);
void* realloc(void*, size_t);
void free(void*);
void* aligned_alloc(size_t, size_t);
int posix_memalign(void**, size_t, size_t);
__attribute__((noreturn)) void abort(void);
__attribute__((noreturn)) void exit(int);
__attribute__((noreturn)) void _Exit(int);
__attribute__((noreturn)) void quick_exit(int);
int atexit(void (*)(void));
int at_quick_exit(void (*)(void));
char* getenv(const char*);
int setenv(const char*, const char*, int);
int unsetenv(const char*);
int system(const char*);
double atof(const char*);
int atoi(const char*);
long atol(const char*);
long long atoll(const char*);
double strtod(const char*, char**);
float strtof(const char*, char**);
long double strtold(const char*, char**);
long strtol(const char*, char**, int);
long long strtoll(const char*, char**, int);
unsigned long strtoul(const char*, char**, int);
unsigned long long strtoull(const char*, char**, int);
int rand(void);
void srand(unsigned);
void* bsearch(const void*, const void*, size_t, size_t, int (*)(const void*, const void*));
void qsort(void*, size_t, size_t, int (*)(const void*, const void*));
int abs(int);
long labs(long);
long long llabs(long long);
div_t div(int, int);
ldiv_t ldiv(long, long);
lldiv_t lldiv(long long, long long);
int mblen(const char*, size_t);
int mbtowc(wchar_t*, const char*, size_t);
int wctomb(char*, wchar_t);
size_t mbstowcs(wchar_t*, const char*, size_t);
size_t wcstombs(char*, const wchar_t*, size_t);
int mkstemp(char*);
char* mkdtemp(char*);
char* realpath(const char*, char*);

#ifdef __cplusplus
}
#endif
