// Module registration: registers the module with the host when the library is loaded.

#include <plinth/config/InitializerRegistrar.h>

#include <array>
#include <functional>

namespace mezzo {

namespace {

// The host's context flags for this module. They have no effect, because it has no initialisers.
constexpr auto kContextFlags = static_cast<plinth::config::EInitializerContextFlags>(2);

const plinth::config::InitializerRegistrar sMezzoInitializer(
    "Mezzo", kContextFlags, std::function<bool()>(), std::function<void()>(),
    std::function<void()>(), std::array<plinth::config::DependencyNamePacket, 16>());

}  // namespace

}  // namespace mezzo
