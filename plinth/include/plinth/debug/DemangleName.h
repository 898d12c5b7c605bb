/// \file
/// Demangling: readable names of types.
#pragma once

#include <plinth/Export.h>

#include <string>

namespace plinth::debug {

/// Demangles the name of a type.
/// \param inName the name as `std::type_info::name` returns it, such as "l".
/// \return the name in the source, such as "long"; `inName` itself if it is not a mangled name.
/// \exception std::bad_alloc if memory runs out.
PLINTH_EXPORT std::string DemangleName(const char* inName);

}  // namespace plinth::debug
