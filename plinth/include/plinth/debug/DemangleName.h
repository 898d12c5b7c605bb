/// \file
/// Readable names of types.
#pragma once

#include <plinth/Export.h>

#include <string>

namespace plinth::debug {

/// Turns the name of a type, as `std::type_info::name` gives it, into the name in the source.
/// \param inName the name, such as "l".
/// \return the readable name, such as "long"; `inName` itself when it is no such name.
/// \exception std::bad_alloc when memory runs out.
PLINTH_EXPORT std::string DemangleName(const char* inName);

}  // namespace plinth::debug
