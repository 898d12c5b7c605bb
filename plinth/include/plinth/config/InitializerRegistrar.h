/// \file
/// Initializer registrar: registers modules with the host's initializer framework.
#pragma once

#include <plinth/Export.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace plinth::config {

/// The contexts in which a module is initialised; bits defined by the host.
enum EInitializerContextFlags : std::int32_t {};

/// Names a module that has to be initialised first.
struct DependencyNamePacket {
  const char* name;  ///< the module's name; null or empty: none
};

/// Registers a module for the lifetime of this object.
///
/// This stand-in records registrations and calls no function of a module. It may be used during
/// static initialisation and at process exit.
class PLINTH_EXPORT InitializerRegistrar {
 public:
  /// The arguments of a module's registration.
  struct Registration {
    std::string name;                ///< the module's name
    EInitializerContextFlags flags;  ///< its contexts
    bool hasInitialize;              ///< whether it has a function to start it up
    bool hasPrepareTermination;      ///< whether it has one to prepare for termination
    bool hasTerminate;               ///< whether it has one to shut it down
    std::size_t dependencyCount;     ///< the number of dependencies that name a module
  };

  /// Observes modules: called with true after a registration, with false before a removal. The
  /// module is among the registrations both times.
  using Observer = void (*)(const char* inName, bool inRegistered) noexcept;

  /// Registers a module.
  /// \param inName the module's name.
  /// \param inFlags its contexts.
  /// \param inInitialize starts the module up and returns whether that succeeded; may be empty.
  /// \param inPrepareTermination prepares the module for termination; may be empty.
  /// \param inTerminate shuts the module down; may be empty.
  /// \param inDependencies the modules to initialise first.
  /// \exception std::bad_alloc if memory runs out; nothing is registered then.
  InitializerRegistrar(const char* inName, EInitializerContextFlags inFlags,
                       const std::function<bool()>& inInitialize,
                       const std::function<void()>& inPrepareTermination,
                       const std::function<void()>& inTerminate,
                       const std::array<DependencyNamePacket, 16>& inDependencies);

  /// Removes the registration.
  virtual ~InitializerRegistrar();

  InitializerRegistrar(const InitializerRegistrar&) = delete;
  InitializerRegistrar& operator=(const InitializerRegistrar&) = delete;

  /// \return the modules that are registered now, in order of registration.
  /// \exception std::bad_alloc if memory runs out.
  static std::vector<Registration> GetRegistrations();

  /// Installs the observer of registrations and removals.
  /// \param inObserver the observer; null: none.
  /// \return the previous observer.
  static Observer SetObserver(Observer inObserver) noexcept;

 private:
  const Registration fRegistration;
};

}  // namespace plinth::config
