// Stands for usr/include/TargetConditionals.h of the SDK: which system of the family this is.
#pragma once

#define TARGET_OS_MAC 1
#define TARGET_OS_OSX 1
#define TARGET_OS_IPHONE 0
#define TARGET_OS_IOS 0
#define TARGET_OS_SIMULATOR 0
#define TARGET_CPU_ARM64 1
#define TARGET_CPU_X86_64 0
