// Four-character codes are numbers to the system: these are the documented ones, written out.
#include <gtest/gtest.h>

#include "platform/AudioTypes.h"

namespace quillmere {
namespace {

TEST(FourCharacterCodes, HaveTheirFirstCharacterInTheHighestByte) {
  EXPECT_EQ(fourCC("abcd"), 0x61626364U);
  EXPECT_EQ(fourCC("uid "), 0x75696420U);
  EXPECT_EQ(fourCC("\xFF\x80\x01\x7F"), 0xFF80017FU);
}

TEST(FourCharacterCodes, OfTheSystemAreTheDocumentedNumbers) {
  EXPECT_EQ(audio::devices, 0x64657623U);
  EXPECT_EQ(audio::defaultOutputDevice, 0x644F7574U);
  EXPECT_EQ(audio::processObjectList, 0x70727323U);
  EXPECT_EQ(audio::deviceUID, 0x75696420U);
  EXPECT_EQ(audio::objectName, 0x6C6E616DU);
  EXPECT_EQ(audio::streams, 0x73746D23U);
  EXPECT_EQ(audio::deviceIsAlive, 0x6C69766EU);
  EXPECT_EQ(audio::volumeScalar, 0x766F6C6DU);
  EXPECT_EQ(audio::transportType, 0x7472616EU);
  EXPECT_EQ(audio::processBundleID, 0x70626964U);
  EXPECT_EQ(audio::processPID, 0x70706964U);
  EXPECT_EQ(audio::processIsRunningOutput, 0x7069726FU);
  EXPECT_EQ(audio::processIsRunningInput, 0x70697269U);
  EXPECT_EQ(audio::tapFormat, 0x74666D74U);
  EXPECT_EQ(audio::scopeGlobal, 0x676C6F62U);
  EXPECT_EQ(audio::scopeOutput, 0x6F757470U);
}

TEST(FourCharacterCodes, OfTransportsAreTheDocumentedNumbers) {
  EXPECT_EQ(audio::transportBuiltIn, 0x626C746EU);
  EXPECT_EQ(audio::transportBluetooth, 0x626C7565U);
  EXPECT_EQ(audio::transportBluetoothLE, 0x626C6561U);
  EXPECT_EQ(audio::transportUSB, 0x75736220U);
  EXPECT_EQ(audio::transportFireWire, 0x31333934U);
  EXPECT_EQ(audio::transportAirPlay, 0x61697270U);
}

TEST(FourCharacterCodes, OfErrorsAreTheDocumentedNumbers) {
  EXPECT_EQ(badObjectError, 560947818);
  EXPECT_EQ(unknownPropertyError, 2003332927);
  EXPECT_EQ(hardwareNotRunningError, 1937010544);
  EXPECT_EQ(illegalOperationError, 1852797029);
  EXPECT_EQ(unspecifiedError, 2003329396);
}

}  // namespace
}  // namespace quillmere
