// Stands for <objc/objc.h>
#pragma once

#pragma clang assume_nonnull begin

typedef bool BOOL;
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
#define Nil nullptr

#pragma clang assume_nonnull end
