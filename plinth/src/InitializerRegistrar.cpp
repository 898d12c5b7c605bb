#include <plinth/config/InitializerRegistrar.h>

#include <algorithm>
#include <atomic>
#include <mutex>

namespace plinth::config {

namespace {

struct Registry {
  std::mutex mutex;
  std::vector<const InitializerRegistrar*> registrars;
};

/// Constructed by the first registration and never destroyed: modules are removed during exit.
Registry& GetRegistry() {
  static Registry& sRegistry = *new Registry;
  return sRegistry;
}

constinit std::atomic<InitializerRegistrar::Observer> sObserver{nullptr};

/// Called without the lock; an observer may list the registrations.
void NotifyObserver(const char* inName, bool inRegistered) noexcept {
  if (const auto observer = sObserver.load()) observer(inName, inRegistered);
}

std::size_t CountDependencies(const std::array<DependencyNamePacket, 16>& inDependencies) {
  const auto namesModule = [](const DependencyNamePacket& inPacket) {
    return inPacket.name != nullptr && *inPacket.name != '\0';
  };
  return static_cast<std::size_t>(
      std::count_if(inDependencies.begin(), inDependencies.end(), namesModule));
}

}  // namespace

InitializerRegistrar::InitializerRegistrar(
    const char* inName, EInitializerContextFlags inFlags, const std::function<bool()>& inInitialize,
    const std::function<void()>& inPrepareTermination, const std::function<void()>& inTerminate,
    const std::array<DependencyNamePacket, 16>& inDependencies)
    : fRegistration{inName,
                    inFlags,
                    static_cast<bool>(inInitialize),
                    static_cast<bool>(inPrepareTermination),
                    static_cast<bool>(inTerminate),
                    CountDependencies(inDependencies)} {
  Registry& registry = GetRegistry();
  {
    const std::lock_guard lock(registry.mutex);
    registry.registrars.push_back(this);
  }
  NotifyObserver(fRegistration.name.c_str(), true);
}

InitializerRegistrar::~InitializerRegistrar() {
  NotifyObserver(fRegistration.name.c_str(), false);
  Registry& registry = GetRegistry();
  const std::lock_guard lock(registry.mutex);
  std::erase(registry.registrars, this);
}

std::vector<InitializerRegistrar::Registration> InitializerRegistrar::GetRegistrations() {
  std::vector<Registration> registrations;
  Registry& registry = GetRegistry();
  const std::lock_guard lock(registry.mutex);
  for (const auto* registrar : registry.registrars)
    registrations.push_back(registrar->fRegistration);
  return registrations;
}

InitializerRegistrar::Observer InitializerRegistrar::SetObserver(Observer inObserver) noexcept {
  return sObserver.exchange(inObserver);
}

}  // namespace plinth::config
