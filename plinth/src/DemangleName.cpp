#include <plinth/debug/DemangleName.h>

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace plinth::debug {

std::string DemangleName(const char* inName) {
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(inName, nullptr, nullptr, nullptr), &std::free);
  return name ? name.get() : inName;
}

}  // namespace plinth::debug
