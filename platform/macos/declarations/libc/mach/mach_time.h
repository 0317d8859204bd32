// Stands for usr/include/mach/mach_time.h of the SDK: nothing of it is asked for but that it is there.
#pragma once

#include <stdint.h>
