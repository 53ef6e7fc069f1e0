#pragma once

#include <string>

#include "BrowserCore/Date.h"

namespace orvel {

// Days and times as the user reads them: in the time zone and the language of the desktop, as they
// were when the thread first asked.
namespace local_dates {

// The first moment of the calendar day that holds the date.
[[nodiscard]] Date startOfDay(Date date);
// The first moment of the day before the one that begins at `startOfDay`.
[[nodiscard]] Date previousDay(Date startOfDay);
// The whole date without a time: "Saturday, November 21, 2026".
[[nodiscard]] std::string completeDate(Date date);
// The time without a date and without seconds: "10:24 AM".
[[nodiscard]] std::string shortTime(Date date);

}  // namespace local_dates

}  // namespace orvel
