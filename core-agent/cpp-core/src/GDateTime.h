#pragma once

#include <string>

#include "GErrorCodes.h"
#include "SDateTime.h"

/// A date and time in UTC, to and from ISO 8601 text.
///
/// Each field has its own bounds; the length of a month isn't checked, so "2020-02-31" is accepted.
class GDateTime : public GDateTimeCodes {
 public:
  static constexpr TSInt16 kMinYear = 0, kMaxYear = 9999;
  static constexpr TSInt16 kMinMonth = 1, kMaxMonth = 12;
  static constexpr TSInt16 kMinDay = 1, kMaxDay = 31;
  static constexpr TSInt16 kMinHour = 0, kMaxHour = 23;
  static constexpr TSInt16 kMinMinute = 0, kMaxMinute = 59;
  static constexpr TSInt16 kMinSecond = 0, kMaxSecond = 59;
  static constexpr TSInt16 kMinMillisecond = 0, kMaxMillisecond = 999;

  /// The date that stands for "never".
  static const char* const kFarFuture;

  /// The current time.
  GDateTime();
  GDateTime(const GDateTime&) = default;
  GDateTime& operator=(const GDateTime&) = default;
  explicit GDateTime(const SDateTime& dateTime);

  /// Parses; after a failure, which is logged, the object holds what had been read before it.
  explicit GDateTime(const std::string& dateString);

  const SDateTime& GetSDateTime() const { return mDateTime; }

  /// True when all fields are 0.
  bool IsEmpty() const;

  /// Reads "YYYY-MM-DD", optionally with "Thh:mm", ":ss" and ".mmm" behind it. Digits aren't counted, a
  /// millisecond above 999 becomes 999, and what follows (a "Z", an offset) isn't read or applied.
  ///
  /// \return kParsingError for a missing separator or a field out of its bounds. Fields already read stay
  ///         set, those not reached keep their value.
  TErrCode SetFromISO8601String(const std::string& text);

  /// "YYYY-MM-DD", with the time "YYYY-MM-DDThh:mm:ss.mmmZ".
  std::string GetAsISO8601String(bool includeTime) const;

  /// To the second; the millisecond is 0.
  static SDateTime OSGetCurrentDateTimeUTC();

 private:
  SDateTime mDateTime;
};
