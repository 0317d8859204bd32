// Stands for <AppKit/NSUserInterfaceItemIdentification.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NSString* NSUserInterfaceItemIdentifier;

#pragma clang assume_nonnull end
