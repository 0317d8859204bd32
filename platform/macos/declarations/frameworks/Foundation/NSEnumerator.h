// Stands for <Foundation/NSEnumerator.h>
#pragma once

#import <Foundation/NSObject.h>

#pragma clang assume_nonnull begin

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable* _Nonnull)buffer
                                    count:(NSUInteger)length;
@end

#pragma clang assume_nonnull end
