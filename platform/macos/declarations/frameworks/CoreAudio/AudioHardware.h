// Stands for <CoreAudio/AudioHardware.h>
#pragma once

#include <CoreAudio/AudioHardwareBase.h>
#include <CoreFoundation/CoreFoundation.h>

extern "C" {
#pragma clang assume_nonnull begin

enum : AudioObjectID { kAudioObjectSystemObject = 1 };
enum : AudioObjectPropertySelector {
  kAudioHardwarePropertyDevices = 'dev#',
  kAudioHardwarePropertyDefaultOutputDevice = 'dOut',
  kAudioHardwarePropertyProcessObjectList = 'prs#',
};
enum : AudioObjectPropertySelector { kAudioDevicePropertyVolumeScalar = 'volm' };
enum : AudioObjectPropertySelector {
  kAudioProcessPropertyPID = 'ppid',
  kAudioProcessPropertyBundleID = 'pbid',
  kAudioProcessPropertyIsRunningInput = 'piri',
  kAudioProcessPropertyIsRunningOutput = 'piro',
};
enum : AudioObjectPropertySelector { kAudioTapPropertyFormat = 'tfmt' };

#define kAudioAggregateDeviceUIDKey "uid"
#define kAudioAggregateDeviceNameKey "name"
#define kAudioAggregateDeviceSubDeviceListKey "subdevices"
#define kAudioAggregateDeviceMainSubDeviceKey "master"
#define kAudioAggregateDeviceIsPrivateKey "private"
#define kAudioAggregateDeviceIsStackedKey "stacked"
#define kAudioAggregateDeviceTapListKey "taps"
#define kAudioAggregateDeviceTapAutoStartKey "tapautostart"
#define kAudioSubDeviceUIDKey "uid"
#define kAudioSubTapUIDKey "uid"
#define kAudioSubTapDriftCompensationKey "drift"

typedef void (^AudioObjectPropertyListenerBlock)(UInt32 addressCount, const AudioObjectPropertyAddress* addresses);

Boolean AudioObjectHasProperty(AudioObjectID object, const AudioObjectPropertyAddress* address);
OSStatus AudioObjectIsPropertySettable(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                       Boolean* isSettable);
OSStatus AudioObjectGetPropertyDataSize(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                        UInt32 qualifierSize, const void* _Nullable qualifier, UInt32* size);
OSStatus AudioObjectGetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                    UInt32 qualifierSize, const void* _Nullable qualifier, UInt32* size, void* data);
OSStatus AudioObjectSetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                    UInt32 qualifierSize, const void* _Nullable qualifier, UInt32 size,
                                    const void* data);
OSStatus AudioObjectAddPropertyListenerBlock(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                             dispatch_queue_t _Nullable queue,
                                             AudioObjectPropertyListenerBlock listener);
OSStatus AudioObjectRemovePropertyListenerBlock(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                                dispatch_queue_t _Nullable queue,
                                                AudioObjectPropertyListenerBlock listener);

OSStatus AudioHardwareCreateAggregateDevice(CFDictionaryRef description, AudioObjectID* device);
OSStatus AudioHardwareDestroyAggregateDevice(AudioObjectID device);

typedef OSStatus (*AudioDeviceIOProc)(AudioObjectID device, const AudioTimeStamp* now, const AudioBufferList* input,
                                      const AudioTimeStamp* inputTime, AudioBufferList* output,
                                      const AudioTimeStamp* outputTime, void* _Nullable client);
typedef AudioDeviceIOProc AudioDeviceIOProcID;
typedef void (^AudioDeviceIOBlock)(const AudioTimeStamp* now, const AudioBufferList* input,
                                   const AudioTimeStamp* inputTime, AudioBufferList* output,
                                   const AudioTimeStamp* outputTime);
OSStatus AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID _Nullable* _Nonnull proc, AudioObjectID device,
                                            dispatch_queue_t _Nullable queue, AudioDeviceIOBlock block);
OSStatus AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc);
OSStatus AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID _Nullable proc);
OSStatus AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID _Nullable proc);

#pragma clang assume_nonnull end
}
