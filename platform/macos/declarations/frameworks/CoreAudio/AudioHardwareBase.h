// Stands for <CoreAudio/AudioHardwareBase.h>
#pragma once

#include <CoreAudioTypes/CoreAudioBaseTypes.h>
#include <dispatch/dispatch.h>
#include <os/availability.h>

extern "C" {
#pragma clang assume_nonnull begin

typedef UInt32 AudioObjectID;
typedef UInt32 AudioClassID;
typedef UInt32 AudioObjectPropertySelector;
typedef UInt32 AudioObjectPropertyScope;
typedef UInt32 AudioObjectPropertyElement;
struct AudioObjectPropertyAddress {
  AudioObjectPropertySelector mSelector;
  AudioObjectPropertyScope mScope;
  AudioObjectPropertyElement mElement;
};
typedef struct AudioObjectPropertyAddress AudioObjectPropertyAddress;

enum : OSStatus {
  kAudioHardwareNoError = 0,
  kAudioHardwareNotRunningError = 'stop',
  kAudioHardwareUnspecifiedError = 'what',
  kAudioHardwareUnknownPropertyError = 'who?',
  kAudioHardwareIllegalOperationError = 'nope',
  kAudioHardwareBadObjectError = '!obj',
  kAudioHardwareBadPropertySizeError = '!siz',
};
enum : AudioObjectPropertyElement { kAudioObjectPropertyElementMain = 0 };
enum : AudioObjectPropertyScope {
  kAudioObjectPropertyScopeGlobal = 'glob',
  kAudioObjectPropertyScopeOutput = 'outp',
};
enum : AudioObjectPropertySelector {
  kAudioObjectPropertyName = 'lnam',
};
enum : AudioObjectPropertySelector {
  kAudioDevicePropertyDeviceUID = 'uid ',
  kAudioDevicePropertyTransportType = 'tran',
  kAudioDevicePropertyDeviceIsAlive = 'livn',
  kAudioDevicePropertyStreams = 'stm#',
};
enum : UInt32 {
  kAudioDeviceTransportTypeBuiltIn = 'bltn',
  kAudioDeviceTransportTypeVirtual = 'virt',
  kAudioDeviceTransportTypePCI = 'pci ',
  kAudioDeviceTransportTypeUSB = 'usb ',
  kAudioDeviceTransportTypeFireWire = '1394',
  kAudioDeviceTransportTypeBluetooth = 'blue',
  kAudioDeviceTransportTypeBluetoothLE = 'blea',
  kAudioDeviceTransportTypeHDMI = 'hdmi',
  kAudioDeviceTransportTypeAirPlay = 'airp',
};

#pragma clang assume_nonnull end
}
