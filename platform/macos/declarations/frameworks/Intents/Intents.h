// Stands for <Intents/Intents.h>
#pragma once

#import <Intents/INFocusStatusCenter.h>
