// Stands for <Foundation/NSGeometry.h>
#pragma once

#import <CoreGraphics/CGGeometry.h>
#import <Foundation/NSObjCRuntime.h>

#pragma clang assume_nonnull begin

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) { return {x, y}; }
static inline NSSize NSMakeSize(CGFloat width, CGFloat height) { return {width, height}; }
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  return {{x, y}, {width, height}};
}
#define NSZeroPoint NSMakePoint(0, 0)
#define NSZeroRect NSMakeRect(0, 0, 0, 0)

typedef NS_ENUM(NSUInteger, NSRectEdge) {
  NSRectEdgeMinX = 0,
  NSRectEdgeMinY = 1,
  NSRectEdgeMaxX = 2,
  NSRectEdgeMaxY = 3
};

#pragma clang assume_nonnull end
