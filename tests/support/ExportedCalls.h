// Every exported function in one table: what its arguments may be, how it is called, and its
// results as text. Digests, fault injection, threads and fuzzing all walk this table.
#pragma once

#include <Utility/TimeConversionUtils.h>

#include <plinth/string/UTF16String.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

namespace mezzo::test {

using Fields = std::vector<std::string>;
using Forms = std::vector<std::string>;

/// The one generator of the tests: the same bits on every platform.
class SplitMix64 {
 public:
  explicit SplitMix64(std::uint64_t inSeed) : fState(inSeed) {}

  std::uint64_t operator()() {
    std::uint64_t bits = fState += 0x9e3779b97f4a7c15;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111eb;
    return bits ^ (bits >> 31);
  }

 private:
  std::uint64_t fState;
};

/// Where the arguments of a call come from, and what surrounds the call. The usual values of an
/// argument are a hint for sources that make arguments up.
class Arguments {
 public:
  virtual ~Arguments() = default;

  using Usual = std::initializer_list<std::int64_t>;
  std::int32_t Int32(Usual inUsual) { return static_cast<std::int32_t>(Integer(32, inUsual)); }
  std::int64_t Int64() { return Integer(64, {}); }
  bool Flag() { return (Integer(32, {0, 1}) & 1) != 0; }
  std::int32_t SampleRate();
  std::int32_t FrameRate();
  utility::BeatInfo Beats();
  virtual double Double(std::initializer_list<double> inUsual) = 0;
  /// What a text holds before a call replaces it.
  plinth::UTF16String oldText = u"keep";
  /// In a form, "#" stands for a number.
  virtual plinth::UTF16String Text(const Forms& inForms) = 0;

  /// Makes the call; where that throws std::bad_alloc, a source may answer a result of zero.
  template <class Call>
  auto Make(const Call& inCall) {
    using Result = std::invoke_result_t<const Call&>;
    if constexpr (std::is_void_v<Result>) {
      Surround(std::ref(inCall));
      return "void";
    } else {
      Result result{};
      Surround([&] { result = inCall(); });
      return result;
    }
  }

 protected:
  virtual std::int64_t Integer(int inBits, Usual inUsual) = 0;
  virtual void Surround(const std::function<void()>& inCall) { inCall(); }
};

/// Draws arguments from the documented domain and far outside it: the same ones for a seed on every
/// platform and with every standard library.
class DrawnArguments : public Arguments {
 public:
  /// \param outTrace receives every argument, unless null.
  explicit DrawnArguments(std::uint64_t inSeed, Fields* outTrace = nullptr)
      : fBits(inSeed), fIsTame(inSeed % 2 == 0), fTrace(outTrace) {}

  double Double(std::initializer_list<double> inUsual) override;
  plinth::UTF16String Text(const Forms& inForms) override;

 protected:
  std::int64_t Integer(int inBits, Usual inUsual) override;

 private:
  std::size_t Below(std::uint64_t inBound) { return static_cast<std::size_t>(fBits() % inBound); }
  char16_t Unit();
  plinth::UTF16String Digits(std::uint64_t inMost);
  plinth::UTF16String AnyText(const Forms& inForms);

  SplitMix64 fBits;
  bool fIsTame;  // nothing but usual values
  Fields* fTrace;
};

struct ExportedCall {
  const char* name;  ///< overloads carry a suffix behind "-"
  /// Draws arguments, makes the call and gives the return value, then the outputs.
  Fields (*call)(Arguments& ioArguments);
  /// The result depends on arguments alone, not on what other threads do.
  bool isPure = true;
};

std::span<const ExportedCall> ExportedCalls();

/// A text as results show it.
std::string Quoted(const plinth::UTF16String& inText);

/// Results in one line.
std::string Joined(const Fields& inFields);

/// A 64-bit FNV-1a hash of everything added to it.
class Digest {
 public:
  void Add(const std::string& inLine) {
    for (const char byte : inLine) Add(static_cast<unsigned char>(byte));
    Add('\n');
  }
  std::uint64_t Value() const { return fHash; }

 private:
  void Add(unsigned char inByte) { fHash = (fHash ^ inByte) * 0x100000001b3; }

  std::uint64_t fHash = 0xcbf29ce484222325;
};

}  // namespace mezzo::test
