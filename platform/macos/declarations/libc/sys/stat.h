// Stands for usr/include/sys/stat.h of the SDK: what POSIX names there, as far as the program and its libraries ask.
#pragma once

#include <sys/types.h>
#include <time.h>

struct stat {
  dev_t st_dev;
  mode_t st_mode;
  nlink_t st_nlink;
  ino_t st_ino;
  uid_t st_uid;
  gid_t st_gid;
  dev_t st_rdev;
  struct timespec st_atimespec;
  struct timespec st_mtimespec;
  struct timespec st_ctimespec;
  struct timespec st_birthtimespec;
  off_t st_size;
  blkcnt_t st_blocks;
  blksize_t st_blksize;
  uint32_t st_flags;
  uint32_t st_gen;
};

#define S_IFMT 0170000
#define S_IFDIR 0040000
#define S_IFREG 0100000
#define S_ISDIR(mode) (((mode) & S_IFMT) == S_IFDIR)
#define S_ISREG(mode) (((mode) & S_IFMT) == S_IFREG)
#define S_IRUSR 0400
#define S_IWUSR 0200
#define S_IXUSR 0100
#define S_IRWXU 0700
#ifdef __cplusplus
extern "C" {
#endif

int stat(const char*, struct stat*);
int lstat(const char*, struct stat*);
int fstat(int, struct stat*);
int mkdir(const char*, mode_t);
int chmod(const char*, mode_t);

#ifdef __cplusplus
}
#endif
