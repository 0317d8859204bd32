// Stands for usr/include/wctype.h of the SDK: what ISO C names there.
#pragma once

#include <stddef.h>

#ifndef _WINT_T
#define _WINT_T
typedef int wint_t;
#endif
#define WEOF ((wint_t) - 1)
typedef int wctrans_t;
typedef unsigned int wctype_t;
#ifdef __cplusplus
extern "C" {
#endif

int iswalnum(wint_t);
int iswalpha(wint_t);
int iswblank(wint_t);
int iswcntrl(wint_t);
int iswdigit(wint_t);
int iswgraph(wint_t);
int iswlower(wint_t);
int iswprint(wint_t);
int iswpunct(wint_t);
int iswspace(wint_t);
int iswupper(wint_t);
int iswxdigit(wint_t);
int iswctype(wint_t, wctype_t);
wctype_t wctype(const char*);
wint_t towlower(wint_t);
wint_t towupper(wint_t);
wint_t towctrans(wint_t, wctrans_t);
wctrans_t wctrans(const char*);

#ifdef __cplusplus
}
#endif
