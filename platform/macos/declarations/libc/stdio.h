// Stands for usr/include/stdio.h of the SDK: what ISO C and POSIX name there.
#pragma once

#include <stdarg.h>
#include <sys/types.h>

typedef struct QuillmereFile FILE;
typedef int64_t fpos_t;

extern "C" FILE* __stdinp;
extern "C" FILE* __stdoutp;
extern "C" FILE* __stderrp;
#define stdin __stdinp
#define stdout __stdoutp
#define stderr __stderrp
#define EOF (-1)
#define BUFSIZ 1024
#define FILENAME_MAX 1024
#define FOPEN_MAX 20
#define L_tmpnam 1024
#define TMP_MAX 308915776
#define SEEK_SET 0
#define SEEK_CUR 1
#define SEEK_END 2
#define _IOFBF 0
#define _IOLBF 1
#define _IONBF 2
#ifdef __cplusplus
extern "C" {
#endif

int printf(const char*, ...) __attribute__((format(printf, 1, 2)));
int fprintf(FILE*, const char*, ...) __attribute__((format(printf, 2, 3)));
int sprintf(char*, const char*, ...) __attribute__((format(printf, 2, 3)));
int snprintf(char*, size_t, const char*, ...) __attribute__((format(printf, 3, 4)));
int dprintf(int, const char*, ...) __attribute__((format(printf, 2, 3)));
int asprintf(char**, const char*, ...) __attribute__((format(printf, 2, 3)));
int vprintf(const char*, va_list);
int vfprintf(FILE*, const char*, va_list);
int vsprintf(char*, const char*, va_list);
int vsnprintf(char*, size_t, const char*, va_list);
int vasprintf(char**, const char*, va_list);
int scanf(const char*, ...);
int fscanf(FILE*, const char*, ...);
int sscanf(const char*, const char*, ...);
int vscanf(const char*, va_list);
int vfscanf(FILE*, const char*, va_list);
int vsscanf(const char*, const char*, va_list);
FILE* fopen(const char*, const char*);
FILE* freopen(const char*, const char*, FILE*);
FILE* fdopen(int, const char*);
FILE* popen(const char*, const char*);
int pclose(FILE*);
int fclose(FILE*);
int fflush(FILE*);
int fileno(FILE*);
void setbuf(FILE*, char*);
int setvbuf(FILE*, char*, int, size_t);
size_t fread(void*, size_t, size_t, FILE*);
size_t fwrite(const void*, size_t, size_t, FILE*);
int fgetc(FILE*);
char* fgets(char*, int, FILE*);
int fputc(int, FILE*);
int fputs(const char*, FILE*);
int getc(FILE*);
int getchar(void);
int putc(int, FILE*);
int putchar(int);
int puts(const char*);
int ungetc(int, FILE*);
int fgetpos(FILE*, fpos_t*);
int fsetpos(FILE*, const fpos_t*);
int fseek(FILE*, long, int);
int fseeko(FILE*, off_t, int);
long ftell(FILE*);
off_t ftello(FILE*);
void rewind(FILE*);
void clearerr(FILE*);
int feof(FILE*);
int ferror(FILE*);
void perror(const char*);
int remove(const char*);
int rename(const char*, const char*);
FILE* tmpfile(void);
char* tmpnam(char*);
ssize_t getline(char**, size_t*, FILE*);

#ifdef __cplusplus
}
#endif
