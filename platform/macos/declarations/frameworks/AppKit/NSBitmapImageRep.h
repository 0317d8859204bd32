// Stands for <AppKit/NSBitmapImageRep.h>
#pragma once

#import <AppKit/NSGraphics.h>
#import <AppKit/NSImageRep.h>
#import <CoreGraphics/CGImage.h>

#pragma clang assume_nonnull begin

typedef NS_ENUM(NSUInteger, NSBitmapImageFileType) { NSBitmapImageFileTypePNG = 4 };
typedef NSString* NSBitmapImageRepPropertyKey;

@interface NSBitmapImageRep : NSImageRep
@property(nullable, readonly) unsigned char* bitmapData;
- (instancetype)initWithCGImage:(CGImageRef)image;
- (nullable instancetype)initWithBitmapDataPlanes:(unsigned char* _Nullable* _Nullable)planes
                                       pixelsWide:(NSInteger)width
                                       pixelsHigh:(NSInteger)height
                                    bitsPerSample:(NSInteger)bitsPerSample
                                  samplesPerPixel:(NSInteger)samples
                                         hasAlpha:(BOOL)alpha
                                         isPlanar:(BOOL)planar
                                   colorSpaceName:(NSColorSpaceName)colorSpace
                                      bytesPerRow:(NSInteger)bytesPerRow
                                     bitsPerPixel:(NSInteger)bitsPerPixel;
- (nullable NSData*)representationUsingType:(NSBitmapImageFileType)type
                                 properties:(NSDictionary<NSBitmapImageRepPropertyKey, id>*)properties;
@end

#pragma clang assume_nonnull end
