// The module registers before the activation signal is built and unregisters after it is destroyed.
// The test does not link to the library, because it observes the load from its beginning.

#include "../support/Heap.h"
#include <Utility/AppRunningState.h>

#include <plinth/config/InitializerRegistrar.h>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace mezzo {
namespace {

using plinth::config::InitializerRegistrar;

std::uint64_t sAllocationsAtRegistration = 0;

void Watch(const char* inName, bool inRegistered) noexcept {
  std::fprintf(stderr, "%s %s; ", inName, inRegistered ? "joins" : "leaves");
  if (!inRegistered) return;
  const auto module = InitializerRegistrar::GetRegistrations().back();
  const int functions = module.hasInitialize + module.hasPrepareTermination + module.hasTerminate;
  std::fprintf(stderr, "flags %d, %d functions, %zu dependencies; ", static_cast<int>(module.flags),
               functions, module.dependencyCount);
  sAllocationsAtRegistration = test::heap::GetAllocationCount();
}

[[noreturn]] void LoadAndExit() {
  InitializerRegistrar::SetObserver(&Watch);
  const InitializerRegistrar host("Host", plinth::config::EInitializerContextFlags{1}, {}, [] {},
                                  {}, {{{"Other"}, {""}, {nullptr}, {"Third"}}});
  void* const library = dlopen(MEZZO_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  // Constructing the signal allocates. Nothing else in the library allocates at load.
  if (test::heap::GetAllocationCount() > sAllocationsAtRegistration)
    std::fputs("signal is built; ", stderr);
  const auto getSignal = reinterpret_cast<decltype(&utility::GetAppActivatedSignal)>(
      dlsym(library, "_ZN5mezzo7utility21GetAppActivatedSignalEv"));
  const auto printEnd = [](int*) { std::fputs("signal is gone; ", stderr); };
  getSignal().connect([token = std::shared_ptr<int>(nullptr, printEnd)](bool) {});
  std::exit(0);
}

TEST(LoadOrder, PutsTheRegistrationAroundTheSignal) {
  EXPECT_EXIT(LoadAndExit(), testing::ExitedWithCode(0),
              "^Host joins; flags 1, 1 functions, 2 dependencies; "
              "Mezzo joins; flags 2, 0 functions, 0 dependencies; signal is built; "
              "signal is gone; Mezzo leaves; $");
}

}  // namespace
}  // namespace mezzo
