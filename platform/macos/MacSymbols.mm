// Draws a symbol into a bitmap.
#include "platform/macos/MacSymbols.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <cstddef>

#include "foundation/Text.h"

namespace quillmere {

namespace {

constexpr NSInteger bitsPerSample = 8;
constexpr NSInteger samplesPerPixel = 4;
constexpr NSInteger alphaSample = 3;

NSFontWeight fontWeight(int weight) {
  if (weight <= 300) return NSFontWeightLight;
  if (weight <= 400) return NSFontWeightRegular;
  if (weight < 600) return NSFontWeightMedium;
  if (weight < 700) return NSFontWeightSemibold;
  return NSFontWeightBold;
}

}  // namespace

std::optional<SymbolMask> systemSymbol(const std::string& name, int width, int height, int weight) {
  @autoreleasepool {
    NSImage* image = [NSImage imageWithSystemSymbolName:macos::nsString(name) accessibilityDescription:nil];
    if (image == nil || width < 1 || height < 1) return std::nullopt;
    NSImageSymbolConfiguration* look = [NSImageSymbolConfiguration configurationWithPointSize:height
                                                                                       weight:fontWeight(weight)];
    image = [image imageWithSymbolConfiguration:look];
    NSBitmapImageRep* bitmap = [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                                       pixelsWide:width
                                                                       pixelsHigh:height
                                                                    bitsPerSample:bitsPerSample
                                                                  samplesPerPixel:samplesPerPixel
                                                                         hasAlpha:YES
                                                                         isPlanar:NO
                                                                   colorSpaceName:NSDeviceRGBColorSpace
                                                                      bytesPerRow:width * samplesPerPixel
                                                                     bitsPerPixel:bitsPerSample * samplesPerPixel];
    if (bitmap == nil || image == nil) return std::nullopt;
    const NSSize natural = image.size;
    const CGFloat scale =
        std::min(width / std::max<CGFloat>(natural.width, 1), height / std::max<CGFloat>(natural.height, 1));
    const NSSize fitted = NSMakeSize(natural.width * scale, natural.height * scale);
    [NSGraphicsContext saveGraphicsState];
    NSGraphicsContext.currentContext = [NSGraphicsContext graphicsContextWithBitmapImageRep:bitmap];
    [image
        drawInRect:NSMakeRect((width - fitted.width) / 2, (height - fitted.height) / 2, fitted.width, fitted.height)];
    [NSGraphicsContext restoreGraphicsState];
    const unsigned char* pixels = bitmap.bitmapData;
    if (pixels == nullptr) return std::nullopt;
    SymbolMask mask{width, height, {}};
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    mask.coverage.reserve(count);
    for (std::size_t pixel = 0; pixel < count; ++pixel) {
      mask.coverage.push_back(pixels[pixel * samplesPerPixel + alphaSample]);
    }
    return mask;
  }
}

}  // namespace quillmere
