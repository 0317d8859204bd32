// Stands for <CoreGraphics/CGGeometry.h>
#pragma once

#include <CoreGraphics/CGBase.h>

extern "C" {
#pragma clang assume_nonnull begin

struct CGPoint {
  CGFloat x;
  CGFloat y;
};
struct CGSize {
  CGFloat width;
  CGFloat height;
};
struct CGRect {
  CGPoint origin;
  CGSize size;
};
typedef struct CGPoint CGPoint;
typedef struct CGSize CGSize;
typedef struct CGRect CGRect;

#pragma clang assume_nonnull end
}
