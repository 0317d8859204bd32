// Stands for <AppKit/NSImage.h>
#pragma once

#import <AppKit/NSFontDescriptor.h>
#import <CoreGraphics/CGImage.h>
#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSGraphicsContext;
typedef NSString* NSImageHintKey;

@interface NSImageSymbolConfiguration : NSObject <NSCopying, NSSecureCoding>
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
@end

@interface NSImage : NSObject <NSCopying>
@property NSSize size;
@property(nullable, copy) NSString* accessibilityDescription;
+ (instancetype)imageWithSize:(NSSize)size flipped:(BOOL)isFlipped drawingHandler:(BOOL (^)(NSRect place))handler;
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description;
- (nullable instancetype)initWithContentsOfURL:(NSURL*)url;
- (nullable NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
- (nullable CGImageRef)CGImageForProposedRect:(nullable NSRect*)place
                                      context:(nullable NSGraphicsContext*)context
                                        hints:(nullable NSDictionary<NSImageHintKey, id>*)hints;
- (void)drawInRect:(NSRect)place;
// A property there, whose name is a word of C++.
- (void)setTemplate:(BOOL)isTemplate;
@end

#pragma clang assume_nonnull end
