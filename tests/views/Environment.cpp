// The application object of tests that read no text.
#include "ApplicationEnvironment.h"

namespace quillmere {
namespace {

[[maybe_unused]] const auto* const application = testing::AddGlobalTestEnvironment(new ApplicationEnvironment);

}  // namespace
}  // namespace quillmere
