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
using BitSource = std::function<std::uint64_t()>;

/// A generator that gives the same bits on every platform.
BitSource SplitMix64(std::uint64_t inSeed);

/// Typical values of a parameter, for sources that generate arguments.
struct TypicalValues {
  std::vector<double> numbers{};
  std::vector<std::string> forms{};  ///< of a text; "#" stands for a number
};

/// Where arguments come from.
class ArgumentSource {
 public:
  virtual ~ArgumentSource() = default;

  virtual std::int64_t GetInteger(int inWidth, const TypicalValues& inTypical = {}) = 0;
  virtual double GetDouble(const TypicalValues& inTypical = {}) = 0;
  virtual plinth::UTF16String GetText(const TypicalValues& inTypical) = 0;

  /// What a text holds before a call replaces it.
  plinth::UTF16String oldText = u"keep";
};

/// Draws arguments from the documented domain and far outside it: the same ones for the same bits
/// on every platform and with every standard library.
class DrawnArguments : public ArgumentSource {
 public:
  /// \param inSeed an even seed draws tame numbers.
  explicit DrawnArguments(std::uint64_t inSeed)
      : DrawnArguments(SplitMix64(inSeed), inSeed % 2 == 0) {}
  /// \param inIsTame keeps numbers typical or moderate; texts do not depend on it.
  DrawnArguments(BitSource inBits, bool inIsTame) : fBits(std::move(inBits)), fIsTame(inIsTame) {}

  std::size_t DrawBelow(std::uint64_t inBound) {
    return static_cast<std::size_t>(fBits() % inBound);
  }
  std::int64_t GetInteger(int inWidth, const TypicalValues& inTypical = {}) override;
  double GetDouble(const TypicalValues& inTypical = {}) override;
  plinth::UTF16String GetText(const TypicalValues& inTypical) override;

  Fields* trace = nullptr;  ///< receives every argument that is drawn

 private:
  BitSource fBits;
  bool fIsTame;
};

/// Runs code around a call; may omit the call.
using Surround = std::function<void(const std::function<void()>& inCall)>;

struct ExportedCall {
  std::string name;  ///< overloads have a suffix after "-"
  /// \return the return value, then the outputs. The return value is zero if the call did not
  ///     complete.
  std::function<Fields(ArgumentSource&& ioFrom, const Surround& inSurround)> runWith;
  bool isPure = true;  ///< the results depend on arguments alone, not on what other threads do

  Fields Run(ArgumentSource&& ioFrom) const {
    return runWith(std::move(ioFrom), [](const auto& inCall) { inCall(); });
  }
  friend void PrintTo(const ExportedCall& inCall, std::ostream* outTo) { *outTo << inCall.name; }
};

const std::vector<ExportedCall>& GetExportedCalls();

/// Results in one line.
std::string Join(const Fields& inFields);

/// Adds a line to a 64-bit FNV-1a hash.
void Hash(std::uint64_t& ioHash, const std::string& inLine);
constexpr std::uint64_t kHashOfNoLines = 0xcbf29ce484222325;

}  // namespace mezzo::test
