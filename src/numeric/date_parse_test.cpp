// The date reader over texts in both locales. Each row gives the German
// and the English answer ("" where the text is refused) and the rule it
// pins. The current year comes from a fixed source (2031, not a leap
// year), so the rows that leave the year out do not depend on the clock.
#include "numeric/date_parse.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "norvik50/encoding.h"
#include "norvik50/locale.h"
#include "numeric/convert_to_type.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

int Year2031() { return 2031; }

struct Row {
  const char16_t* text;
  const char* german;  // ISO answer, or "" when refused
  const char* english;
  const char* rule;
};

// Answers without a time are midnight; a time alone lies on 1899-12-30.
constexpr const char* kNo = "";

const Row kRows[] = {
    // -- The ISO form is read first, in every locale.
    {u"2024-03-05", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "ISO date"},
    {u"2024-03-05T14:07:09", "2024-03-05T14:07:09", "2024-03-05T14:07:09", "ISO with T"},
    {u"2024-03-05 14:07:09", "2024-03-05T14:07:09", "2024-03-05T14:07:09", "ISO with a blank"},
    {u"  2024-03-05  ", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "blanks around"},
    {u"2024-3-5", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "a long first number is the year"},
    {u"2024/03/05", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "year first with slashes"},
    {u"2024-13-05", kNo, kNo, "month 13 after a year"},
    {u"2024-02-30", kNo, kNo, "no 30 February"},
    // -- Three numbers: the locale's order first.
    {u"3/5/2024", "2024-05-03T00:00:00", "2024-03-05T00:00:00", "d/M/y against M/d/y"},
    {u"5/3/2024", "2024-03-05T00:00:00", "2024-05-03T00:00:00", "d/M/y against M/d/y"},
    {u"3-5-2024", "2024-05-03T00:00:00", "2024-03-05T00:00:00", "'-' is a date separator"},
    {u"03/05/2024", "2024-05-03T00:00:00", "2024-03-05T00:00:00", "leading zeros"},
    {u"12/11/10", "2010-11-12T00:00:00", "2010-12-11T00:00:00", "two-digit year"},
    {u"1/2/3", "2003-02-01T00:00:00", "2003-01-02T00:00:00", "one-digit year"},
    {u"31/12/2024", "2024-12-31T00:00:00", "2024-12-31T00:00:00",
     "English: no month 31, no day 2024, so day and month swap"},
    {u"12/31/2024", "2024-12-31T00:00:00", "2024-12-31T00:00:00",
     "German: no month 31, so day and month swap"},
    {u"13/13/2024", kNo, kNo, "no reading has a month 13"},
    {u"29/2/2024", "2024-02-29T00:00:00", "2024-02-29T00:00:00", "leap day, swapped in English"},
    {u"29/2/2023", kNo, kNo, "no leap day in 2023"},
    {u"2/29/2023", kNo, kNo, "no leap day in 2023, either order"},
    {u"0/5/2024", kNo, kNo, "day or month 0"},
    // -- Dots: a date separator in German only.
    {u"5.3.2024", "2024-03-05T00:00:00", kNo, "English reads it as a time: second 2024"},
    {u"05.03.2024", "2024-03-05T00:00:00", kNo, "dotted date refused in English"},
    {u"02.01.1970", "1970-01-02T00:00:00", kNo, "dotted date refused in English"},
    {u"5.3.24", "2024-03-05T00:00:00", "1899-12-30T05:03:24", "English: a dotted time"},
    {u"1.5.2", "2002-05-01T00:00:00", "1899-12-30T01:05:02", "English: a dotted time"},
    {u"0.40", "1899-12-30T00:40:00", "1899-12-30T00:40:00", "no date has a day or month 0"},
    {u"1.5", "2031-05-01T00:00:00", "1899-12-30T01:05:00", "German: day and month"},
    {u"13.25", "1899-12-30T13:25:00", "1899-12-30T13:25:00", "no date reading: a time"},
    {u"23.59.59", "1899-12-30T23:59:59", "1899-12-30T23:59:59", "no date reading: a time"},
    {u"24.00", kNo, kNo, "neither a date nor a time"},
    {u"5.3.", "2031-03-05T00:00:00", "1899-12-30T05:03:00", "a trailing dot"},
    {u"5.3.2024 14:07", "2024-03-05T14:07:00", kNo, "English: two times"},
    {u"5.3.2024 14.07", "2024-03-05T14:07:00", kNo, "German: the last dot chain is the time"},
    {u"14.07 5.3.2024", "2024-03-05T14:07:00", kNo, "German: then the one before"},
    {u"1.2 3 4", "2031-04-03T01:02:00", "2031-03-04T01:02:00", "dotted time, date of two"},
    {u"1.5 2", kNo, kNo, "a decimal fraction mixed into a date"},
    {u"1.5 2024", kNo, kNo, "a decimal fraction mixed into a date"},
    {u"3 4 1.2", "2031-04-03T01:02:00", "2031-03-04T01:02:00", "the dotted time after the date"},
    {u"5.3. 2024", "2024-03-05T00:00:00", kNo, "a trailing dot ends no fraction"},
    {u"5. 3. 2024", "2024-03-05T00:00:00", "2024-05-03T00:00:00", "numbers with dots after"},
    {u"1.2.3.4", kNo, kNo, "four numbers in a chain"},
    {u"31.4.2024", kNo, kNo, "no 31 April, no hour 31"},
    {u"31.4", "1931-04-01T00:00:00", kNo, "German: year and month; English: hour 31"},
    {u"12.30", "2031-12-30T00:00:00", "1899-12-30T12:30:00", "German: month and day"},
    {u"12.13", "2031-12-13T00:00:00", "1899-12-30T12:13:00", "German: month and day"},
    {u"23.45", "1899-12-30T23:45:00", "1899-12-30T23:45:00", "no month 23 or 45"},
    {u"7.45", "1945-07-01T00:00:00", "1899-12-30T07:45:00", "German: month and year"},
    {u"0.5", "2000-05-01T00:00:00", "1899-12-30T00:05:00", "German: year 0 and month"},
    // -- Times.
    {u"14:07", "1899-12-30T14:07:00", "1899-12-30T14:07:00", "a time alone"},
    {u"14:07:09", "1899-12-30T14:07:09", "1899-12-30T14:07:09", "with seconds"},
    {u"0:00", "1899-12-30T00:00:00", "1899-12-30T00:00:00", "midnight"},
    {u"23:59:59", "1899-12-30T23:59:59", "1899-12-30T23:59:59", "the last second"},
    {u"24:00", kNo, kNo, "hour 24"},
    {u"12:60", kNo, kNo, "minute 60"},
    {u"12:30:60", kNo, kNo, "second 60"},
    {u"7:5", "1899-12-30T07:05:00", "1899-12-30T07:05:00", "one-digit minutes"},
    {u"007:05", kNo, kNo, "three-digit hour"},
    {u"14:07:09:01", kNo, kNo, "four time fields"},
    {u"14:", kNo, kNo, "a dangling time separator"},
    {u":30", kNo, kNo, "a leading time separator"},
    // -- AM and PM.
    {u"1 am", "1899-12-30T01:00:00", "1899-12-30T01:00:00", "a bare hour with a mark"},
    {u"1 pm", "1899-12-30T13:00:00", "1899-12-30T13:00:00", "a bare hour with a mark"},
    {u"12 am", "1899-12-30T00:00:00", "1899-12-30T00:00:00", "12 am is midnight"},
    {u"12 pm", "1899-12-30T12:00:00", "1899-12-30T12:00:00", "12 pm is noon"},
    {u"1am", "1899-12-30T01:00:00", "1899-12-30T01:00:00", "no blank before the mark"},
    {u"1 PM", "1899-12-30T13:00:00", "1899-12-30T13:00:00", "marks in any case"},
    {u"1 p", "1899-12-30T13:00:00", "1899-12-30T13:00:00", "the one-letter mark"},
    {u"13:00 PM", "1899-12-30T13:00:00", "1899-12-30T13:00:00", "redundant PM"},
    {u"13:00 AM", "1899-12-30T13:00:00", "1899-12-30T13:00:00", "a mark on hour 13 does nothing"},
    {u"2:07:09 PM", "1899-12-30T14:07:09", "1899-12-30T14:07:09", "PM adds 12 hours"},
    {u"12:15 AM", "1899-12-30T00:15:00", "1899-12-30T00:15:00", "12 AM is hour 0"},
    {u"2:07 pm 3/5/2024", "2024-05-03T14:07:00", "2024-03-05T14:07:00", "time before the date"},
    {u"3/5/2024 2:07:09 PM", "2024-05-03T14:07:09", "2024-03-05T14:07:09", "date, time, mark"},
    {u"PM", kNo, kNo, "a mark without a time"},
    {u"3/5/2024 PM", kNo, kNo, "a mark after a date"},
    {u"1 am pm", kNo, kNo, "two marks"},
    {u"March 5 pm", kNo, kNo, "5 is the hour, the month has no day"},
    {u"1.30 pm", "1899-12-30T13:30:00", "1899-12-30T13:30:00", "a dot chain with a mark"},
    {u"25 pm", kNo, kNo, "hour 25"},
    {u"0 am", "1899-12-30T00:00:00", "1899-12-30T00:00:00", "hour 0 with a mark"},
    {u"6.30 am", "1899-12-30T06:30:00", "1899-12-30T06:30:00", "a dotted time with a mark"},
    {u"6.30 pm 5/3/2024", "2024-03-05T18:30:00", "2024-05-03T18:30:00", "then a date"},
    // -- Month names: the locale's and English.
    {u"March 5, 2024", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "English names always"},
    {u"5 March 2024", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "day before the month"},
    {u"5. M\u00E4rz 2024", "2024-03-05T00:00:00", kNo, "German name"},
    {u"Tuesday, March 5, 2024", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "a weekday"},
    {u"Dienstag, 5. M\u00E4rz 2024", "2024-03-05T00:00:00", kNo, "German weekday"},
    {u"Mar 5 2024", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "abbreviation"},
    {u"5-Mar-2024", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "separators next to words"},
    {u"5-Mar-24", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "two-digit year"},
    {u"Jan 35", "1935-01-01T00:00:00", "1935-01-01T00:00:00", "no day 35: a year"},
    {u"Jan 25", "2031-01-25T00:00:00", "2031-01-25T00:00:00", "a day of the current year"},
    {u"Feb 30", "1930-02-01T00:00:00", "1930-02-01T00:00:00", "no 30 February: a year"},
    {u"M\u00E4rz 2024", "2024-03-01T00:00:00", kNo, "month and year"},
    {u"March 2024", "2024-03-01T00:00:00", "2024-03-01T00:00:00", "month and year"},
    {u"2024 March 5", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "year before day"},
    {u"March", kNo, kNo, "a month alone"},
    {u"March April 5", kNo, kNo, "two months"},
    {u"Sept 5 2024", "2024-09-05T00:00:00", "2024-09-05T00:00:00", "a longer abbreviation"},
    {u"sep 5 2024", "2024-09-05T00:00:00", "2024-09-05T00:00:00", "lower case"},
    {u"M\u00E4r 5 2024", "2024-03-05T00:00:00", kNo, "German three-letter start"},
    {u"Mrz 5 2024", "2024-03-05T00:00:00", kNo, "German abbreviation"},
    {u"Okt 3 2024", "2024-10-03T00:00:00", kNo, "German abbreviation"},
    {u"Oct 3 2024", "2024-10-03T00:00:00", "2024-10-03T00:00:00", "English abbreviation"},
    {u"Ma 5 2024", kNo, kNo, "two letters name no month"},
    {u"Jan. 5, 2024", "2024-01-05T00:00:00", "2024-01-05T00:00:00", "abbreviation with a dot"},
    {u"5 Jan 1 2", kNo, kNo, "a month name and three numbers"},
    {u"Jan 5 14:07", "2031-01-05T14:07:00", "2031-01-05T14:07:00", "month, day and time"},
    {u"14:07 Jan 5", "2031-01-05T14:07:00", "2031-01-05T14:07:00", "time first"},
    {u"JANUARY 5 2024", "2024-01-05T00:00:00", "2024-01-05T00:00:00", "names in any case"},
    {u"Jan 5 100", "0100-01-05T00:00:00", "0100-01-05T00:00:00", "three-digit year as written"},
    {u"Jan 5 99", "1999-01-05T00:00:00", "1999-01-05T00:00:00", "window: 99 is 1999"},
    {u"Jan 5 29", "2029-01-05T00:00:00", "2029-01-05T00:00:00", "window: 29 is 2029"},
    {u"Jan 5 30", "1930-01-05T00:00:00", "1930-01-05T00:00:00", "window: 30 is 1930"},
    {u"Jan 0 2024", kNo, kNo, "day 0"},
    {u"Foo 5 2024", kNo, kNo, "an unknown word"},
    {u"Monday 5 March 2024", "2024-03-05T00:00:00", "2024-03-05T00:00:00",
     "the weekday is not checked"},
    {u"Wed", kNo, kNo, "a weekday alone"},
    {u"Mittwoch 14:07", "1899-12-30T14:07:00", kNo, "German weekday and a time"},
    // -- Two numbers: day and month, else month and year.
    {u"30 2", "1930-02-01T00:00:00", "1930-02-01T00:00:00", "no 30 February: month and year"},
    {u"2 30", "1930-02-01T00:00:00", "1930-02-01T00:00:00", "no month 30: month and year"},
    {u"5 2024", "2024-05-01T00:00:00", "2024-05-01T00:00:00", "month and year"},
    {u"2024 5", "2024-05-01T00:00:00", "2024-05-01T00:00:00", "year and month"},
    {u"3 5", "2031-05-03T00:00:00", "2031-03-05T00:00:00", "the locale's order"},
    {u"12 31", "2031-12-31T00:00:00", "2031-12-31T00:00:00", "German: swapped"},
    {u"31 12", "2031-12-31T00:00:00", "2031-12-31T00:00:00", "English: swapped"},
    {u"13 13", kNo, kNo, "no reading"},
    {u"0 5", "2000-05-01T00:00:00", "2000-05-01T00:00:00", "year 0 and a month"},
    {u"3/5", "2031-05-03T00:00:00", "2031-03-05T00:00:00", "slash, no year"},
    {u"5/2024", "2024-05-01T00:00:00", "2024-05-01T00:00:00", "month and year"},
    {u"2/29", "2029-02-01T00:00:00", "2029-02-01T00:00:00",
     "no 29 February in 2031: month and year"},
    {u"12 2", "2031-02-12T00:00:00", "2031-12-02T00:00:00", "the locale's order"},
    // -- Three numbers: then year, month, day; then swapped.
    {u"14 2 3", "2003-02-14T00:00:00", "2014-02-03T00:00:00", "English: no month 14: year first"},
    {u"2024 3 5", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "four digits first"},
    {u"45 3 5", "1945-03-05T00:00:00", "1945-03-05T00:00:00", "above 31: only a year"},
    {u"32 1 1", "1932-01-01T00:00:00", "1932-01-01T00:00:00", "above 31: only a year"},
    {u"31 1 1", "2001-01-31T00:00:00", "1931-01-01T00:00:00", "English: year first"},
    {u"13 5 20", "2020-05-13T00:00:00", "2013-05-20T00:00:00", "English: year first"},
    {u"5 13 20", "2020-05-13T00:00:00", "2020-05-13T00:00:00", "German: swapped"},
    {u"99 12 31", "1999-12-31T00:00:00", "1999-12-31T00:00:00", "above 31: only a year"},
    {u"0100 1 1", "0100-01-01T00:00:00", "0100-01-01T00:00:00", "four digits with a zero"},
    {u"1 1 100", "0100-01-01T00:00:00", "0100-01-01T00:00:00", "the first year"},
    {u"1 1 99", "1999-01-01T00:00:00", "1999-01-01T00:00:00", "window"},
    {u"1 1 0", "2000-01-01T00:00:00", "2000-01-01T00:00:00", "window"},
    {u"1 1 29", "2029-01-01T00:00:00", "2029-01-01T00:00:00", "window edge"},
    {u"1 1 30", "1930-01-01T00:00:00", "1930-01-01T00:00:00", "window edge"},
    {u"1 1 9999", "9999-01-01T00:00:00", "9999-01-01T00:00:00", "the last year"},
    {u"31 12 9999", "9999-12-31T00:00:00", "9999-12-31T00:00:00", "the last day"},
    {u"1 1 10000", kNo, kNo, "five digits"},
    {u"1 1 099", kNo, kNo, "year 99 written with three digits is before 100"},
    {u"1 2 3 4", kNo, kNo, "four numbers"},
    // -- Date and time in either order.
    {u"3/5/2024 14:07", "2024-05-03T14:07:00", "2024-03-05T14:07:00", "date then time"},
    {u"14:07 3/5/2024", "2024-05-03T14:07:00", "2024-03-05T14:07:00", "time then date"},
    {u"3/5/2024, 14:07", "2024-05-03T14:07:00", "2024-03-05T14:07:00", "a comma between"},
    {u"3/5 14:07", "2031-05-03T14:07:00", "2031-03-05T14:07:00", "no year"},
    {u"14:07:09 2024-03-05", "2024-03-05T14:07:09", "2024-03-05T14:07:09", "time, ISO date"},
    {u"14:07 15:08", kNo, kNo, "two times"},
    {u"3/5/2024 1 pm", "2024-05-03T13:00:00", "2024-03-05T13:00:00", "date and bare hour"},
    {u"3/5/2024 1", kNo, kNo, "four numbers"},
    {u"5.3.2024 1 pm", "2024-03-05T13:00:00", kNo, "English: two times"},
    {u"5.3.2024 2:07:09 PM", "2024-03-05T14:07:09", kNo, "English: two times"},
    {u"3/5/2024 14:07 14:08", kNo, kNo, "two times"},
    // -- A time stands before all the numbers of the date or after them all.
    {u"1 2.3 4", kNo, kNo, "a dotted time between the date's numbers"},
    {u"1 2 am 3", kNo, kNo, "a bare hour between the date's numbers"},
    {u"1 2:30 3", kNo, kNo, "a time between the date's numbers"},
    {u"3/5 14:07 2024", kNo, kNo, "a time between the day and the year"},
    {u"Jan 5 14:07 2024", kNo, kNo, "a time between the day and the year"},
    {u"3 1 pm 5", kNo, kNo, "a bare hour between the date's numbers"},
    {u"1 2 3 4.5", "2003-02-01T04:05:00", "2003-01-02T04:05:00", "a dotted time after the date"},
    {u"1 pm 3 5", "2031-05-03T13:00:00", "2031-03-05T13:00:00", "a bare hour before the date"},
    {u"14:07 Jan 5 2024", "2024-01-05T14:07:00", "2024-01-05T14:07:00", "a time before it all"},
    {u"5 14.07 3", kNo, kNo, "German too: the dot chain that is no date is a time"},
    // -- Zero hours and zero minutes with one dot are no time in English.
    {u"0.0", "1899-12-30T00:00:00", kNo, "English: the number zero; German: no date, a time"},
    {u"00.00", "1899-12-30T00:00:00", kNo, "two digits each"},
    {u"0.0 3/5/2024", "2024-05-03T00:00:00", kNo, "English: no time and no date"},
    {u"0.1", "2000-01-01T00:00:00", "1899-12-30T00:01:00", "one minute past midnight"},
    {u"0.0.0", "1899-12-30T00:00:00", "1899-12-30T00:00:00", "two dots: a time"},
    {u"0:0", "1899-12-30T00:00:00", "1899-12-30T00:00:00", "the time separator: a time"},
    // -- Unicode blanks separate.
    {u"3/5/2024\u30002:07 PM", "2024-05-03T14:07:00", "2024-03-05T14:07:00", "ideographic"},
    {u"5\u3000M\u00E4rz\u30002024", "2024-03-05T00:00:00", kNo, "ideographic"},
    {u"March\u00A05,\u00A02024", "2024-03-05T00:00:00", "2024-03-05T00:00:00", "no-break"},
    {u"14:07\u2009PM", "1899-12-30T14:07:00", "1899-12-30T14:07:00", "thin space"},
    {u"1\u202Fam", "1899-12-30T01:00:00", "1899-12-30T01:00:00", "narrow no-break"},
    {u"\t3/5/2024\t", "2024-05-03T00:00:00", "2024-03-05T00:00:00", "tabs"},
    {u"3\u30005\u30002024", "2024-05-03T00:00:00", "2024-03-05T00:00:00", "ideographic only"},
    {u"\u20033/5/2024\u2003", "2024-05-03T00:00:00", "2024-03-05T00:00:00", "em spaces"},
    // -- Signs, stray separators and other characters are refused.
    {u"-1.1", kNo, kNo, "a sign"},
    {u"+1.1", kNo, kNo, "a sign"},
    {u"1.1-", kNo, kNo, "a trailing sign"},
    {u"-3/5/2024", kNo, kNo, "a sign before a date"},
    {u"3/5/2024-", kNo, kNo, "a trailing sign"},
    {u"- 3/5/2024", kNo, kNo, "a detached sign"},
    {u"3//5/2024", kNo, kNo, "two separators"},
    {u"3/5.2024", kNo, kNo, "separators of two kinds"},
    {u"14:07.09", kNo, kNo, "separators of two kinds"},
    {u"1,5", kNo, kNo, "two numbers around a comma"},
    {u"1,5 2", kNo, kNo, "a decimal fraction"},
    {u"", kNo, kNo, "empty"},
    {u"   ", kNo, kNo, "blanks"},
    {u"abc", kNo, kNo, "a word"},
    {u"12", kNo, kNo, "a lone number"},
    {u"2024", kNo, kNo, "a lone year"},
    {u"3/5/2024 x", kNo, kNo, "a stray letter"},
    {u"3/5/2024 #", kNo, kNo, "a stray character"},
    {u"#3/5/2024#", kNo, kNo, "date-literal marks"},
    {u"3_5_2024", kNo, kNo, "underscores"},
    {u"1e5", kNo, kNo, "an exponent"},
    {u"12345", kNo, kNo, "five digits"},
    {u"5 . 3 . 2024", kNo, kNo, "a detached separator"},
    {u"$3/5/2024", kNo, kNo, "a currency sign"},
    {u"3/5/2024 am", kNo, kNo, "a mark on a date"},
    {u"am 5. M\u00E4rz 2024", kNo, kNo, "a mark first"},
    // -- Two-digit years in three-number dates.
    {u"5/3/00", "2000-03-05T00:00:00", "2000-05-03T00:00:00", "window: 00"},
    {u"5/3/29", "2029-03-05T00:00:00", "2029-05-03T00:00:00", "window: 29"},
    {u"5/3/30", "1930-03-05T00:00:00", "1930-05-03T00:00:00", "window: 30"},
    {u"5/3/99", "1999-03-05T00:00:00", "1999-05-03T00:00:00", "window: 99"},
    {u"5/3/0", "2000-03-05T00:00:00", "2000-05-03T00:00:00", "window: one digit"},
    {u"5/3/1899", "1899-03-05T00:00:00", "1899-05-03T00:00:00", "before the epoch"},
    // -- The ends of the range and the epoch.
    {u"12/30/1899", "1899-12-30T00:00:00", "1899-12-30T00:00:00", "the epoch"},
    {u"12/30/1899 06:00", "1899-12-30T06:00:00", "1899-12-30T06:00:00", "on the epoch day"},
    {u"1/1/100", "0100-01-01T00:00:00", "0100-01-01T00:00:00", "the first day"},
    {u"31/12/99", "1999-12-31T00:00:00", "1999-12-31T00:00:00", "English: swapped"},
    {u"12/31/9999 23:59:59", "9999-12-31T23:59:59", "9999-12-31T23:59:59", "the last second"},
    {u"1/1/99 0:00:01", "1999-01-01T00:00:01", "1999-01-01T00:00:01", "one second"},
};

std::string Answer(std::u16string_view text) {
  const std::optional<Date> d = ParseDateText(text, CurrentLocale(), &Year2031);
  return d ? d->ToIsoString() : "";
}

TEST(DateParseTest, TableInBothLocales) {
  static_assert(std::size(kRows) >= 220);
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    const bool german = tag[0] == 'd';
    for (const Row& row : kRows) {
      EXPECT_EQ(Answer(row.text), german ? row.german : row.english)
          << tag << " \"" << ToUtf8(row.text) << "\": " << row.rule;
    }
  }
}

// The year comes from the source only when the text leaves it out.
TEST(DateParseTest, CurrentYearOnlyWhenMissing) {
  testing::ScopedLocale locale("en-US");
  static int asked = 0;
  const CurrentYearSource counting = [] {
    ++asked;
    return 2030;
  };
  EXPECT_EQ(ParseDateText(u"3/5/2024", CurrentLocale(), counting)->ToIsoString(),
            "2024-03-05T00:00:00");
  EXPECT_EQ(asked, 0);
  EXPECT_EQ(ParseDateText(u"3/5", CurrentLocale(), counting)->ToIsoString(), "2030-03-05T00:00:00");
  EXPECT_GT(asked, 0);
}

// ConvertToType reads through the same grammar and falls back to today.
TEST(DateParseTest, RefusedTextsGiveTheFallback) {
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (const char16_t* text : {u"-1.1", u"1.5 2", u"3/5/2024 PM", u"1 2 am 3", u"1 2.3 4"}) {
      const Variant out = ConvertToType(7, Variant(text));
      EXPECT_EQ(out.as_date().serial, std::floor(out.as_date().serial)) << tag;
      EXPECT_GT(out.as_date().serial, 45000) << tag;  // today, not 1899
    }
    EXPECT_EQ(ConvertToType(7, Variant(u"02.01.1970")).as_date().serial,
              tag[0] == 'd' ? 25570.0 : std::floor(Date::Now().serial))
        << tag;
  }
}

}  // namespace
}  // namespace norvik50
