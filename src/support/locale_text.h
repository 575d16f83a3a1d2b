#pragma once
// Text that depends on a language: the order of names, dates, names of months, canonical composition. All of it follows
// the data of ICU (Unicode CLDR). A locale identifier is a text such as "de_DE", "fr-CA" or "en"; a null one means the
// locale of the environment (LC_ALL, LC_MESSAGES, LANG), and one that nobody knows the root locale.

#include "support/values.h"

namespace vornaset {

/// How names stand in a list for people: -1, 0 or 1. Runs of digits count as numbers, case doesn't count, accents do.
/// A null locale identifier means the root order, which is the same for every user, and not the environment's. A null
/// text stands before all others.
int localizedStandardCompare(const String& first, const String& second, const String& localeIdentifier = nullptr);

/// A new array with the texts in that order; what compares equal stands in the order of its units, so that the outcome
/// doesn't depend on the order before. Entries that are no texts are left out. Never null.
Array sortedByStandardCompare(const Array& texts, const String& localeIdentifier = nullptr);

/// The text in canonical composed form (NFC, Unicode annex 15); the same object when it is in that form already. Null
/// for null. Lone surrogates stay.
String canonicallyComposed(const String& text);

/// Date and time in the short styles of the locale, in the time zone given by its identifier ("Europe/Berlin", "GMT");
/// null means the environment's zone.
String shortDateAndTime(const Date& date, const String& localeIdentifier = nullptr,
                        const String& timeZoneIdentifier = nullptr);

/// How much of a date is told.
enum class DateStyle { None, Short, Medium, Long, Full };

/// The date without its time, in a style of the locale; empty for DateStyle::None. The time zone as above.
String dateInStyle(const Date& date, DateStyle style, const String& localeIdentifier = nullptr,
                   const String& timeZoneIdentifier = nullptr);

/// The stand-alone name of the current month in the locale ("March", "März", "mars"). The month is that of the
/// Gregorian calendar at GMT, so near the turn of a month it can differ from the user's own calendar.
String monthName(const String& localeIdentifier);
/// The same for a moment.
String monthName(const String& localeIdentifier, const Date& date);

}  // namespace vornaset
