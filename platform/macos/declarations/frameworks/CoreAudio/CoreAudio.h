// Stands for <CoreAudio/CoreAudio.h>
#pragma once

#include <CoreAudio/AudioHardware.h>
#include <CoreAudioTypes/CoreAudioBaseTypes.h>
