// Where idle threads wait on a host that has nothing better.
#include "ParkingLotContract.h"

namespace quillmere {
namespace {

INSTANTIATE_TEST_SUITE_P(OfTheLibrary, ParkingLotContract, ::testing::Values(makeParkingLot));

}  // namespace
}  // namespace quillmere
