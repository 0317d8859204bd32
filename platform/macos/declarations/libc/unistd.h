// Stands for usr/include/unistd.h of the SDK: what POSIX names there, as far as the program and its libraries ask.
#pragma once

#include <sys/types.h>

#define STDIN_FILENO 0
#define STDOUT_FILENO 1
#define STDERR_FILENO 2
#define _SC_PAGESIZE 29
#define _SC_NPROCESSORS_ONLN 58
#define R_OK 4
#define W_OK 2
#define X_OK 1
#define F_OK 0
#ifdef __cplusplus
extern "C" {
#endif

ssize_t read(int, void*, size_t);
ssize_t write(int, const void*, size_t);
int close(int);
int dup(int);
int dup2(int, int);
int pipe(int[2]);
pid_t getpid(void);
pid_t getppid(void);
uid_t getuid(void);
uid_t geteuid(void);
int access(const char*, int);
int chdir(const char*);
char* getcwd(char*, size_t);
int rmdir(const char*);
int unlink(const char*);
int isatty(int);
off_t lseek(int, off_t, int);
int ftruncate(int, off_t);
long sysconf(int);
unsigned sleep(unsigned);
int usleep(useconds_t);
pid_t fork(void);
int execv(const char*, char* const*);
__attribute__((noreturn)) void _exit(int);

#ifdef __cplusplus
}
#endif
