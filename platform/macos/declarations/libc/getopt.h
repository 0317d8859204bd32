// Stands for usr/include/getopt.h of the SDK: the long options of the command line.
#pragma once

struct option {
  const char* name;
  int has_arg;
  int* flag;
  int val;
};

#define no_argument 0
#define required_argument 1
#define optional_argument 2
#ifdef __cplusplus
extern "C" {
#endif

extern char* optarg;
extern int optind;
extern int opterr;
extern int optopt;
int getopt_long(int, char* const*, const char*, const struct option*, int*);

#ifdef __cplusplus
}
#endif
