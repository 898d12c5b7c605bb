/// \file
/// Registration of modules with the host's initializer framework.
#pragma once

#include <plinth/Export.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace plinth::config {

/// Contexts in which a module is initialised: bits of the host's.
enum EInitializerContextFlags : std::int32_t {};

/// Names a module that has to be initialised first. All zero: names none.
struct DependencyNamePacket {
  const char* name;  ///< the module's name; null or empty for none
};

/// Registers a module for as long as it lives.
///
/// This stand-in records registrations and calls no function of a module. It may be used during
/// static initialisation and at process exit.
class PLINTH_EXPORT InitializerRegistrar {
 public:
  /// What a module handed over.
  struct Registration {
    std::string name;                ///< the module's name
    EInitializerContextFlags flags;  ///< its contexts
    bool hasInitialize;              ///< whether there is a function to bring it up
    bool hasPrepareTermination;      ///< whether there is one to tell of the end ahead
    bool hasTerminate;               ///< whether there is one to take it down
    std::size_t dependencyCount;     ///< number of dependencies that name a module
  };

  /// Learns of a module: with true when its registration is complete, with false when its removal
  /// begins. The module is listed in `Registrations` both times.
  using Observer = void (*)(const char* inName, bool inRegistered) noexcept;

  /// Registers a module.
  /// \param inName the module's name.
  /// \param inFlags its contexts.
  /// \param inInitialize brings the module up and tells whether that worked; may be empty.
  /// \param inPrepareTermination is told that termination is ahead; may be empty.
  /// \param inTerminate takes the module down; may be empty.
  /// \param inDependencies the modules to initialise first.
  /// \exception std::bad_alloc when memory runs out; nothing is registered then.
  InitializerRegistrar(const char* inName, EInitializerContextFlags inFlags,
                       const std::function<bool()>& inInitialize,
                       const std::function<void()>& inPrepareTermination,
                       const std::function<void()>& inTerminate,
                       const std::array<DependencyNamePacket, 16>& inDependencies);

  /// Removes the registration.
  virtual ~InitializerRegistrar();

  InitializerRegistrar(const InitializerRegistrar&) = delete;
  InitializerRegistrar& operator=(const InitializerRegistrar&) = delete;

  /// \return the modules registered now, in the order of their registration.
  /// \exception std::bad_alloc when memory runs out.
  static std::vector<Registration> Registrations();

  /// Installs the function that watches modules come and go.
  /// \param inObserver the function; null for none.
  /// \return the function before it.
  static Observer SetObserver(Observer inObserver) noexcept;

 private:
  const Registration fRegistration;
};

}  // namespace plinth::config
