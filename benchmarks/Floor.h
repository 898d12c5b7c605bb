// What the hardware allows: hand-written kernels for one display each, into and out of a fixed
// buffer, without checks of format, precondition or string.
//
// They give the library's results for every positive sample rate and frame rate (30 or 60 for
// drop-frame labels) and every position of less than 100 hours, of which they read and write the
// eleven-unit label. Measuring sticks, not code to copy: they are fast because they can do nothing
// else.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace mezzo::bench::floor {

inline constexpr int kLabelUnits = 11;

/// The two digits of every number below 100 as UTF-16 code units in one word.
inline constexpr auto kPairs = [] {
  std::array<std::uint32_t, 100> pairs{};
  for (std::uint32_t value = 0; value < 100; ++value) {
    pairs[value] = (u'0' + value / 10) | ((u'0' + value % 10) << 16);
  }
  return pairs;
}();

inline void WriteFields(char16_t* outUnits, char16_t inSeparator, std::uint32_t inSeconds,
                        std::uint32_t inFrames) {
  const std::uint32_t minutes = inSeconds / 60;
  const std::uint32_t hours = inSeconds / 3600;
  std::memcpy(outUnits, &kPairs[hours], 4);
  outUnits[2] = inSeparator;
  std::memcpy(outUnits + 3, &kPairs[minutes - 60 * hours], 4);
  outUnits[5] = inSeparator;
  std::memcpy(outUnits + 6, &kPairs[inSeconds - 60 * minutes], 4);
  outUnits[8] = inSeparator;
  std::memcpy(outUnits + 9, &kPairs[inFrames], 4);
}

/// \param outUnits room for eleven code units.
inline void WriteSMPTE(char16_t* outUnits, std::int64_t inSamples, std::int32_t inSampleRate,
                       std::int32_t inTimecodeFPS) {
  const auto fps = static_cast<std::uint32_t>(inTimecodeFPS);
  const auto frames = static_cast<std::uint32_t>(static_cast<std::uint64_t>(inSamples) * fps /
                                                 static_cast<std::uint64_t>(inSampleRate));
  const std::uint32_t seconds = fps == 30 ? frames / 30 : frames / fps;
  WriteFields(outUnits, u':', seconds, frames - seconds * fps);
}

/// \param outUnits room for eleven code units.
inline void WriteDropFrame(char16_t* outUnits, std::int64_t inSamples, std::int32_t inSampleRate,
                           std::int32_t inTimecodeFPS) {
  const auto fps = static_cast<std::uint32_t>(inTimecodeFPS);
  const std::uint32_t multiplier = fps == 30 ? 1 : 2;
  const auto count =
      static_cast<std::uint32_t>(static_cast<std::uint64_t>(inSamples) * (fps * 1000) /
                                 (1001 * static_cast<std::uint64_t>(inSampleRate)));
  const std::uint32_t pairs = fps == 30 ? count : count / 2;  // 60: labels drop in steps of two
  const std::uint32_t tens = pairs / 17982;
  const std::uint32_t rest = pairs - 17982 * tens;
  const std::uint32_t dropped = 18 * tens + (rest < 2 ? 0 : 2 * ((rest - 2) / 1798));
  const std::uint32_t label = count + multiplier * dropped;
  const std::uint32_t seconds = fps == 30 ? label / 30 : label / 60;
  WriteFields(outUnits, u';', seconds, label - seconds * fps);
}

struct Fields {
  std::uint32_t hours, minutes, seconds, frames;
};

/// Reads "dd?dd?dd?dd"; false when the units there are no such label.
inline bool ReadFields(const char16_t* inUnits, Fields& outFields) {
  std::uint32_t largestDigit = 0;
  const auto field = [&](int place) {
    const std::uint32_t tens = std::uint32_t{inUnits[place]} - u'0';
    const std::uint32_t ones = std::uint32_t{inUnits[place + 1]} - u'0';
    largestDigit = std::max({largestDigit, tens, ones});
    return 10 * tens + ones;
  };
  const auto separates = [&](int place) {
    return std::uint32_t{inUnits[place]} - u'0' > 9 && inUnits[place] != u'.';
  };
  outFields = {field(0), field(3), field(6), field(9)};
  return largestDigit < 10 && separates(2) && separates(5) && separates(8);
}

inline std::int64_t FirstSample(std::uint32_t inFrames, std::uint64_t inFactor,
                                std::uint64_t inDivisor) {
  return static_cast<std::int64_t>((inFactor * inFrames + inDivisor - 1) / inDivisor);
}

inline std::int64_t ReadSMPTE(const char16_t* inUnits, std::int32_t inSampleRate,
                              std::int32_t inTimecodeFPS) {
  Fields fields;
  if (!ReadFields(inUnits, fields)) return -1;
  const auto fps = static_cast<std::uint32_t>(inTimecodeFPS);
  const std::uint32_t seconds = 60 * (60 * fields.hours + fields.minutes) + fields.seconds;
  return FirstSample(seconds * fps + fields.frames, static_cast<std::uint64_t>(inSampleRate), fps);
}

inline std::int64_t ReadDropFrame(const char16_t* inUnits, std::int32_t inSampleRate,
                                  std::int32_t inTimecodeFPS) {
  Fields fields;
  if (!ReadFields(inUnits, fields)) return -1;
  const auto fps = static_cast<std::uint32_t>(inTimecodeFPS);
  const std::uint32_t dropped = fps == 30 ? 2 : 4;
  const std::uint32_t tens = (fields.minutes * 103) >> 10;
  const std::uint32_t minuteOfTen = fields.minutes - 10 * tens;
  const bool isDropped = minuteOfTen != 0 && fields.seconds == 0 && fields.frames < dropped;
  const std::uint32_t minutes = 60 * fields.hours + fields.minutes;
  const std::uint32_t count = (60 * minutes + fields.seconds) * fps +
                              (isDropped ? dropped : fields.frames) -
                              dropped * (minutes - (6 * fields.hours + tens));
  return FirstSample(count, 1001 * static_cast<std::uint64_t>(inSampleRate), 1000 * fps);
}

}  // namespace mezzo::bench::floor
