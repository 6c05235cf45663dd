set d to date "2026-01-31 10:00:00"
d --> date "Saturday, January 31, 2026 at 10:00:00 AM"
d is (current date) --> true
{year of d, month of d, day of d, weekday of d} --> {2026, January, 31, Saturday}
{hours of d, minutes of d, seconds of d, time of d} --> {10, 0, 0, 36000}
date string of d --> "Saturday, January 31, 2026"
short date string of d --> "1/31/26"
time string of d --> "10:00:00 AM"
d as text --> "Saturday, January 31, 2026 at 10:00:00 AM"
day of (d + 1 * days) --> 1
month of (d + 1 * days) --> February
(d + 90 * minutes) - d --> 5400
d - 2 * hours < d --> true
month of d is January --> true
d + "x" --> error -1700
d < 5 --> error -1700
d * 2 --> error -1700

set d to date "2026-01-31 10:00:00"
set day of d to 1
set month of d to March
set year of d to 2024
set hours of d to 23
set minutes of d to 59
{short date string of d, time string of d} --> {"3/1/24", "11:59:00 PM"}
set month of d to 13 --> error -10006

date "1/2/2026" --> date "Friday, January 2, 2026 at 12:00:00 AM"
date "January 2, 2026 3:04 PM" --> date "Friday, January 2, 2026 at 3:04:00 PM"
date "Saturday, January 31, 2026 at 10:00:00 AM" --> date "Saturday, January 31, 2026 at 10:00:00 AM"
date "2 Feb 2026" --> date "Monday, February 2, 2026 at 12:00:00 AM"
date "2024-02-29T23:59:59" --> date "Thursday, February 29, 2024 at 11:59:59 PM"
date "1900-03-01" --> date "Thursday, March 1, 1900 at 12:00:00 AM"
date "12:30" --> date "Saturday, January 31, 2026 at 12:30:00 PM"
date "tomorrow" --> error -30720
date "2026-13-01" --> error -30720
date "2026-01-01 25:00" --> error -30720
