// Stands for usr/include/sys/types.h of the SDK: the types that POSIX names.
#pragma once

#include <stddef.h>
#include <stdint.h>

typedef unsigned char u_char;
typedef unsigned short u_short;
typedef unsigned int u_int;
typedef unsigned long u_long;
typedef int32_t pid_t;
typedef uint32_t uid_t;
typedef uint32_t gid_t;
typedef uint32_t id_t;
typedef int32_t dev_t;
typedef uint64_t ino_t;
typedef uint16_t mode_t;
typedef uint16_t nlink_t;
typedef int64_t off_t;
typedef long ssize_t;
typedef long time_t;
typedef unsigned long clock_t;
typedef int32_t suseconds_t;
typedef uint32_t useconds_t;
typedef int64_t blkcnt_t;
typedef int32_t blksize_t;
typedef unsigned char uuid_t[16];
