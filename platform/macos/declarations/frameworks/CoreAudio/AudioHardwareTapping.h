// Stands for <CoreAudio/AudioHardwareTapping.h>
#pragma once

#import <CoreAudio/AudioHardware.h>
#import <CoreAudio/CATapDescription.h>

#pragma clang assume_nonnull begin

extern "C" OSStatus AudioHardwareCreateProcessTap(CATapDescription* _Nullable description, AudioObjectID* tap)
    API_AVAILABLE(macos(14.2));
extern "C" OSStatus AudioHardwareDestroyProcessTap(AudioObjectID tap) API_AVAILABLE(macos(14.2));

#pragma clang assume_nonnull end
