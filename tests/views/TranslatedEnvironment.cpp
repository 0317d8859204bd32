// The application object of tests that read texts: in the language that the machine asks for.
#include "ApplicationEnvironment.h"
#include "views/Translation.h"

namespace quillmere {
namespace {

class TranslatedEnvironment final : public ApplicationEnvironment {
 public:
  void SetUp() override {
    ApplicationEnvironment::SetUp();
    installTranslation({});
  }
};

[[maybe_unused]] const auto* const application = testing::AddGlobalTestEnvironment(new TranslatedEnvironment);

}  // namespace
}  // namespace quillmere
