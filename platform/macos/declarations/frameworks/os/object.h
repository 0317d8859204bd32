// Stands for <os/object.h>
#pragma once

#import <objc/NSObject.h>

#pragma clang assume_nonnull begin

// A C object that is one of Objective-C's, and so counted by the compiler.
#define OS_OBJECT_DECL(name) \
  @protocol OS_              \
  ##name<NSObject> @end      \
  typedef NSObject<OS_##name>* name##_t

#pragma clang assume_nonnull end
