// Property lists across the border to Foundation. Only for Objective-C++.
#pragma once

#import <Foundation/Foundation.h>

#include "platform/macos/pure/PropertyList.h"

namespace quillmere::macos {

/// `list` as the system's objects: NSNumber, NSString, NSArray, NSDictionary. [any]
id _Nonnull propertyListObject(const PropertyList& list);

/// [any]
NSDictionary<NSString*, id>* _Nonnull propertyListObject(const PropertyList::Dictionary& entries);

}  // namespace quillmere::macos
