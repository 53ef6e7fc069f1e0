#include "Support/LocalDates.h"

#include <unicode/ucal.h>
#include <unicode/udat.h>
#include <unicode/ustring.h>

#include <iterator>
#include <memory>

namespace orvel::local_dates {

namespace {

struct CalendarDeleter {
  void operator()(UCalendar* calendar) const { ucal_close(calendar); }
};
struct FormatDeleter {
  void operator()(UDateFormat* format) const { udat_close(format); }
};
using Calendar = std::unique_ptr<UCalendar, CalendarDeleter>;
using Format = std::unique_ptr<UDateFormat, FormatDeleter>;

UDate milliseconds(Date date) {
  return std::chrono::duration<double, std::milli>(date.time_since_epoch()).count();
}

// Opening a calendar or a formatter takes many times as long as using it: each thread keeps its
// own. All are null where the library cannot make one.

Calendar openCalendar() {
  UErrorCode error = U_ZERO_ERROR;
  return Calendar(ucal_open(nullptr, -1, nullptr, UCAL_GREGORIAN, &error));
}

Format openFormat(UDateFormatStyle dateStyle, UDateFormatStyle timeStyle) {
  UErrorCode error = U_ZERO_ERROR;
  return Format(udat_open(timeStyle, dateStyle, nullptr, nullptr, -1, nullptr, 0, &error));
}

// The start of the day that lies `days` from the date's.
Date dayFrom(Date date, int days) {
  thread_local const Calendar calendar = openCalendar();
  if (!calendar) return date;
  UErrorCode error = U_ZERO_ERROR;
  ucal_setMillis(calendar.get(), milliseconds(date), &error);
  ucal_add(calendar.get(), UCAL_DAY_OF_MONTH, days, &error);
  // Where the clocks go forward at midnight the day begins later: the calendar knows.
  for (const auto field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND})
    ucal_set(calendar.get(), field, 0);
  const UDate start = ucal_getMillis(calendar.get(), &error);
  return U_SUCCESS(error) ? Date(std::chrono::duration_cast<Date::duration>(
                                std::chrono::duration<double, std::milli>(start)))
                          : date;
}

std::string text(Date date, const Format& format) {
  if (!format) return {};
  UErrorCode error = U_ZERO_ERROR;
  UChar letters[128];
  const int32_t count =
      udat_format(format.get(), milliseconds(date), letters, std::size(letters), nullptr, &error);
  if (U_FAILURE(error)) return {};
  std::string utf8(3 * static_cast<size_t>(count), 0);
  int32_t size = 0;
  u_strToUTF8(utf8.data(), static_cast<int32_t>(utf8.size()), &size, letters, count, &error);
  utf8.resize(U_SUCCESS(error) ? static_cast<size_t>(size) : 0);
  return utf8;
}

}  // namespace

Date startOfDay(Date date) { return dayFrom(date, 0); }
Date previousDay(Date startOfDay) { return dayFrom(startOfDay, -1); }

std::string completeDate(Date date) {
  thread_local const Format format = openFormat(UDAT_FULL, UDAT_NONE);
  return text(date, format);
}

std::string shortTime(Date date) {
  thread_local const Format format = openFormat(UDAT_NONE, UDAT_SHORT);
  return text(date, format);
}

}  // namespace orvel::local_dates
