// Stands for usr/include/Availability.h of the SDK: nothing of it is asked for but that it is there.
#pragma once

#include <AvailabilityMacros.h>
