// Stands for usr/include/setjmp.h of the SDK: what ISO C names there.
#pragma once

typedef int jmp_buf[48];
#ifdef __cplusplus
extern "C" {
#endif

int setjmp(jmp_buf);
__attribute__((noreturn)) void longjmp(jmp_buf, int);

#ifdef __cplusplus
}
#endif
