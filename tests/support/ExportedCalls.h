// Every exported function in one table. Vectors, digests, fault injection, threads and fuzzing all
// walk it: they differ in where arguments come from and in what surrounds a call.
#pragma once

#include <Utility/TimeConversionUtils.h>

#include <plinth/string/UTF16String.h>

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace mezzo::test {

using Fields = std::vector<std::string>;

/// Where random bits come from.
using Bits = std::function<std::uint64_t()>;

/// The one generator of the tests: the same bits on every platform.
Bits SplitMix64(std::uint64_t inSeed);

/// What a parameter usually gets, for sources that make arguments up.
struct Usual {
  std::vector<double> numbers{};
  std::vector<std::string> forms{};  ///< of a text; "#" stands for a number
};

/// Where arguments come from.
class Arguments {
 public:
  virtual ~Arguments() = default;

  virtual std::int64_t GetInteger(int inBits, const Usual& inUsual = {}) = 0;
  virtual double GetDouble(const Usual& inUsual = {}) = 0;
  virtual plinth::UTF16String GetText(const Usual& inUsual) = 0;

  /// What a text holds before a call replaces it.
  plinth::UTF16String oldText = u"keep";
};

/// Draws arguments from the documented domain and far outside it: the same ones for the same bits
/// on every platform and with every standard library.
class DrawnArguments : public Arguments {
 public:
  explicit DrawnArguments(std::uint64_t inSeed) : DrawnArguments(SplitMix64(inSeed), inSeed) {}
  /// \param inSeed an even one keeps numbers usual, or at least moderate; texts vary with any.
  DrawnArguments(Bits inBits, std::uint64_t inSeed)
      : fBits(std::move(inBits)), fIsTame(inSeed % 2 == 0) {}

  std::size_t DrawBelow(std::uint64_t inBound) {
    return static_cast<std::size_t>(fBits() % inBound);
  }
  std::int64_t GetInteger(int inBits, const Usual& inUsual = {}) override;
  double GetDouble(const Usual& inUsual = {}) override;
  plinth::UTF16String GetText(const Usual& inUsual) override;

  Fields* trace = nullptr;  ///< receives every argument

 private:
  Bits fBits;
  bool fIsTame;
};

/// Makes a call or omits it.
using Surround = std::function<void(const std::function<void()>& inCall)>;

struct ExportedCall {
  std::string name;  ///< overloads have a suffix after "-"
  /// \return the outputs after the return value, which is zero for a call that was not completed.
  std::function<Fields(Arguments&& ioFrom, const Surround& inSurround)> run;
  bool isPure = true;  ///< the results depend on arguments alone, not on what other threads do

  Fields Run(Arguments&& ioFrom) const {
    return run(std::move(ioFrom), [](const auto& inCall) { inCall(); });
  }
  friend void PrintTo(const ExportedCall& inCall, std::ostream* outTo) { *outTo << inCall.name; }
};

const std::vector<ExportedCall>& ExportedCalls();

/// Results in one line.
std::string Join(const Fields& inFields);

/// A 64-bit FNV-1a hash of many lines, to be carried on from one to the next.
void Hash(std::uint64_t& ioHash, const std::string& inLine);
constexpr std::uint64_t kNoLines = 0xcbf29ce484222325;

}  // namespace mezzo::test
