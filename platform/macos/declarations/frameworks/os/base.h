// Stands for <os/base.h>, the start of it.
#pragma once

#define OS_EXPORT extern "C"
