// Stands for <AppKit/AppKit.h>
#pragma once

#import <AppKit/NSEvent.h>
#import <AppKit/NSSound.h>
#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>
