// Stands for usr/include/AvailabilityMacros.h of the SDK: the version that a program may at least expect.
#pragma once

#define MAC_OS_X_VERSION_MIN_REQUIRED __ENVIRONMENT_MAC_OS_X_VERSION_MIN_REQUIRED__
