// Stands for <MacTypes.h>
#pragma once

#include <stdint.h>

typedef uint8_t UInt8;
typedef uint16_t UInt16;
typedef int16_t SInt16;
typedef unsigned int UInt32;
typedef int SInt32;
typedef unsigned long long UInt64;
typedef long long SInt64;
typedef float Float32;
typedef double Float64;
typedef unsigned char Boolean;
typedef SInt32 OSStatus;
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;
typedef SInt16 OSErr;
typedef unsigned short UniChar;
typedef UInt8* BytePtr;

enum { noErr = 0 };
