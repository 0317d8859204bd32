// Stands for <CoreAudioTypes/CoreAudioBaseTypes.h>
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {
#pragma clang assume_nonnull begin

struct AudioBuffer {
  UInt32 mNumberChannels;
  UInt32 mDataByteSize;
  void* _Nullable mData;
};
typedef struct AudioBuffer AudioBuffer;
struct AudioBufferList {
  UInt32 mNumberBuffers;
  AudioBuffer mBuffers[1];
};
typedef struct AudioBufferList AudioBufferList;

typedef UInt32 AudioFormatID;
typedef UInt32 AudioFormatFlags;
struct AudioStreamBasicDescription {
  Float64 mSampleRate;
  AudioFormatID mFormatID;
  AudioFormatFlags mFormatFlags;
  UInt32 mBytesPerPacket;
  UInt32 mFramesPerPacket;
  UInt32 mBytesPerFrame;
  UInt32 mChannelsPerFrame;
  UInt32 mBitsPerChannel;
  UInt32 mReserved;
};
typedef struct AudioStreamBasicDescription AudioStreamBasicDescription;

struct AudioTimeStamp;
typedef struct AudioTimeStamp AudioTimeStamp;

#pragma clang assume_nonnull end
}
