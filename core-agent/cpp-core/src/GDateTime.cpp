#include "GDateTime.h"

#include <chrono>
#include <cstdio>
#include <sstream>

#include "GErrors.h"

const char* const GDateTime::kFarFuture = "2099-12-31T23:59:59.999Z";

namespace {

constexpr const char* kIdentifier = "Miscellaneous";

TErrCode AssignField(TSInt16 min, TSInt16 max, TSInt32 value, TSInt16& field) {
  const TErrCode status = GFAIL_IF(value < static_cast<TSInt32>(min) || value > static_cast<TSInt32>(max),
                                   TErrCode{GDateTime::kParsingError}, kIdentifier, GLogger::eError);
  if (status == CoreErrorCodes::kSuccess) field = static_cast<TSInt16>(value);
  return status;
}

template <typename Number>
Number ReadNumber(std::istream& text) {
  Number number = 0;
  // A failed extraction leaves 0 (or the nearest number) and must not blind the peeks behind it.
  if (!(text >> number) && !text.eof()) text.clear();
  return number;
}

TErrCode ReadField(std::istream& text, TSInt16 min, TSInt16 max, TSInt16& field) {
  return AssignField(min, max, ReadNumber<TSInt32>(text), field);
}

}  // namespace

GDateTime::GDateTime() : mDateTime(OSGetCurrentDateTimeUTC()) {}

GDateTime::GDateTime(const SDateTime& dateTime) : mDateTime(dateTime) {}

GDateTime::GDateTime(const std::string& dateString) {
  GCHECK(SetFromISO8601String(dateString), kIdentifier, GLogger::eError);
}

bool GDateTime::IsEmpty() const {
  return mDateTime == SDateTime();
}

TErrCode GDateTime::SetFromISO8601String(const std::string& text) {
  std::istringstream ssTime(text);
  ssTime.imbue(std::locale::classic());
  TErrCode status = ReadField(ssTime, kMinYear, kMaxYear, mDateTime.year);
  if (status != 0) return status;
  status = GFAIL_IF(ssTime.peek() != '-', TErrCode{kParsingError}, kIdentifier, GLogger::eError);
  if (status != 0) return status;
  ssTime.ignore();
  status = ReadField(ssTime, kMinMonth, kMaxMonth, mDateTime.month);
  if (status != 0) return status;
  status = GFAIL_IF(ssTime.peek() != '-', TErrCode{kParsingError}, kIdentifier, GLogger::eError);
  if (status != 0) return status;
  ssTime.ignore();
  status = ReadField(ssTime, kMinDay, kMaxDay, mDateTime.day);
  if (status != 0 || ssTime.eof()) return status;
  status = GFAIL_IF(ssTime.peek() != 'T', TErrCode{kParsingError}, kIdentifier, GLogger::eError);
  if (status != 0) return status;
  ssTime.ignore();
  status = ReadField(ssTime, kMinHour, kMaxHour, mDateTime.hour);
  if (status != 0) return status;
  status = GFAIL_IF(ssTime.peek() != ':', TErrCode{kParsingError}, kIdentifier, GLogger::eError);
  if (status != 0) return status;
  ssTime.ignore();
  status = ReadField(ssTime, kMinMinute, kMaxMinute, mDateTime.minute);
  if (status != 0 || ssTime.peek() != ':') return status;
  ssTime.ignore();
  status = ReadField(ssTime, kMinSecond, kMaxSecond, mDateTime.second);
  if (status != 0 || ssTime.peek() != '.') return status;
  ssTime.ignore();
  const auto millisecond = ReadNumber<TUInt16>(ssTime);
  mDateTime.millisecond = millisecond > kMaxMillisecond ? kMaxMillisecond : static_cast<TSInt16>(millisecond);
  return CoreErrorCodes::kSuccess;
}

std::string GDateTime::GetAsISO8601String(bool includeTime) const {
  char text[80];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", mDateTime.year, mDateTime.month, mDateTime.day);
  if (!includeTime) return text;
  char time[80];
  std::snprintf(time, sizeof time, "T%02d:%02d:%02d.%03dZ", mDateTime.hour, mDateTime.minute,
                mDateTime.second, mDateTime.millisecond);
  return std::string(text) + time;
}

SDateTime GDateTime::OSGetCurrentDateTimeUTC() {
  using namespace std::chrono;
  const auto now = floor<seconds>(system_clock::now());
  const auto midnight = floor<days>(now);
  const year_month_day date(midnight);
  const hh_mm_ss time(now - midnight);
  SDateTime result;
  result.year = static_cast<TSInt16>(static_cast<int>(date.year()));
  result.month = static_cast<TSInt16>(static_cast<unsigned>(date.month()));
  result.day = static_cast<TSInt16>(static_cast<unsigned>(date.day()));
  result.hour = static_cast<TSInt16>(time.hours().count());
  result.minute = static_cast<TSInt16>(time.minutes().count());
  result.second = static_cast<TSInt16>(time.seconds().count());
  return result;
}
