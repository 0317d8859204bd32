// Stands for <AppKit/NSCell.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NSInteger NSControlStateValue;
static const NSControlStateValue NSControlStateValueOff = 0;
static const NSControlStateValue NSControlStateValueOn = 1;

#pragma clang assume_nonnull end
