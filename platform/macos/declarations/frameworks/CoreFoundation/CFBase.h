// Stands for <CoreFoundation/CFBase.h>
#pragma once

#include <MacTypes.h>
#include <TargetConditionals.h>
#include <stdint.h>

#define CF_BRIDGED_TYPE(type) __attribute__((objc_bridge(type)))
#define CF_RETURNS_RETAINED __attribute__((cf_returns_retained))
#define CF_ENUM(type, name) \
  enum name : type;         \
  enum name : type
#define CF_OPTIONS(type, name) \
  type name;                   \
  enum __attribute__((flag_enum)) : type

typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFHashCode;
typedef signed long CFIndex;
typedef const void* CFTypeRef;
typedef const struct CF_BRIDGED_TYPE(NSString) __CFString* CFStringRef;
typedef const struct CF_BRIDGED_TYPE(id) __CFAllocator* CFAllocatorRef;

typedef struct {
  CFIndex location;
  CFIndex length;
} CFRange;

extern "C" {
extern const CFAllocatorRef _Nonnull kCFAllocatorDefault;
CFTypeID CFGetTypeID(CFTypeRef _Nonnull object);
}
