#include "support/locale_text.h"

#include <unicode/calendar.h>
#include <unicode/coll.h>
#include <unicode/datefmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/normalizer2.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <memory>
#include <vector>

namespace vornaset {

namespace {

icu::Locale localeNamed(const String& identifier) {
    if (identifier.isNull()) return icu::Locale::getDefault();
    const icu::Locale locale(identifier.utf8().c_str());
    return locale.isBogus() ? icu::Locale::getRoot() : locale;
}

icu::UnicodeString unitsOf(const String& text) {
    return {text.view().data(), static_cast<int32_t>(std::min<size_t>(text.length(), INT_MAX))};
}

String stringOf(const icu::UnicodeString& text) {
    return String(std::u16string_view(text.getBuffer(), static_cast<size_t>(text.length())));
}

/// Numbers by value, case ignored. Null when the locale data can't be had.
std::unique_ptr<icu::Collator> standardCollator(const String& identifier) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale = identifier.isNull() ? icu::Locale::getRoot() : localeNamed(identifier);
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(locale, status));
    if (U_FAILURE(status)) return nullptr;
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    collator->setStrength(icu::Collator::SECONDARY);
    return U_SUCCESS(status) ? std::move(collator) : nullptr;
}

/// Making a collator costs far more than a comparison, and nearly every caller means the same one.
const icu::Collator* collatorFor(const String& identifier) {
    thread_local String lastIdentifier = u"";
    thread_local std::unique_ptr<icu::Collator> last;
    thread_local bool made = false;
    if (!made || lastIdentifier != identifier) {
        last = standardCollator(identifier);
        lastIdentifier = identifier;
        made = true;
    }
    return last.get();  // NOLINT(clang-analyzer-cplusplus.NewDelete): it lives as long as its thread
}

int compareUnits(std::u16string_view first, std::u16string_view second) {
    const int order = first.compare(second);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

int compareBy(const icu::Collator* collator, const String& first, const String& second) {
    if (first.isNull() || second.isNull()) return first.isNull() == second.isNull() ? 0 : first.isNull() ? -1 : 1;
    if (collator == nullptr) return compareUnits(first.view(), second.view());
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult order =
        collator->compare(first.view().data(), static_cast<int32_t>(first.length()), second.view().data(),
                          static_cast<int32_t>(second.length()), status);
    return U_SUCCESS(status) ? static_cast<int>(order) : compareUnits(first.view(), second.view());
}

}  // namespace

int localizedStandardCompare(const String& first, const String& second, const String& localeIdentifier) {
    return compareBy(collatorFor(localeIdentifier), first, second);
}

Array sortedByStandardCompare(const Array& texts, const String& localeIdentifier) {
    std::vector<String> sorted;
    for (const Value& text : texts) {
        if (text.isString()) sorted.push_back(text.string());
    }
    const icu::Collator* collator = collatorFor(localeIdentifier);
    std::sort(sorted.begin(), sorted.end(), [collator](const String& first, const String& second) {
        const int order = compareBy(collator, first, second);
        return order != 0 ? order < 0 : first < second;
    });
    return Array::makeMutable(std::vector<Value>(sorted.begin(), sorted.end()));
}

String canonicallyComposed(const String& text) {
    // Everything below U+0300 is in composed form, which settles nearly every text.
    const std::u16string_view units = text.view();
    if (std::all_of(units.begin(), units.end(), [](char16_t unit) { return unit < 0x300; })) return text;
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* composer = icu::Normalizer2::getNFCInstance(status);
    if (U_FAILURE(status)) return text;
    const icu::UnicodeString source = unitsOf(text);
    if (composer->isNormalized(source, status) && U_SUCCESS(status)) return text;
    const icu::UnicodeString composed = composer->normalize(source, status);
    return U_SUCCESS(status) ? stringOf(composed) : text;
}

String shortDateAndTime(const Date& date, const String& localeIdentifier, const String& timeZoneIdentifier) {
    const std::unique_ptr<icu::DateFormat> style(icu::DateFormat::createDateTimeInstance(
        icu::DateFormat::kShort, icu::DateFormat::kShort, localeNamed(localeIdentifier)));
    if (!style) return date.description();
    if (!timeZoneIdentifier.isNull()) style->adoptTimeZone(icu::TimeZone::createTimeZone(unitsOf(timeZoneIdentifier)));
    icu::UnicodeString text;
    style->format(date.seconds * 1000, text);
    return stringOf(text);
}

String dateInStyle(const Date& date, DateStyle style, const String& localeIdentifier,
                   const String& timeZoneIdentifier) {
    static constexpr icu::DateFormat::EStyle styles[] = {icu::DateFormat::kShort, icu::DateFormat::kMedium,
                                                         icu::DateFormat::kLong, icu::DateFormat::kFull};
    if (style == DateStyle::None) return u"";
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateInstance(styles[static_cast<int>(style) - 1], localeNamed(localeIdentifier)));
    if (!format) return date.description();
    if (!timeZoneIdentifier.isNull()) format->adoptTimeZone(icu::TimeZone::createTimeZone(unitsOf(timeZoneIdentifier)));
    icu::UnicodeString text;
    format->format(date.seconds * 1000, text);
    return stringOf(text);
}

String monthName(const String& localeIdentifier) {
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    return monthName(localeIdentifier, Date{now.count()});
}

String monthName(const String& localeIdentifier, const Date& date) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale = localeNamed(localeIdentifier);
    icu::Locale gregorian = locale;
    gregorian.setKeywordValue("calendar", "gregorian", status);
    const std::unique_ptr<icu::Calendar> calendar(
        icu::Calendar::createInstance(icu::TimeZone::getGMT()->clone(), gregorian, status));
    const icu::DateFormatSymbols symbols(locale, "gregorian", status);
    if (U_FAILURE(status)) return {};
    calendar->setTime(date.seconds * 1000, status);
    const int32_t month = calendar->get(UCAL_MONTH, status);
    int32_t count = 0;
    const icu::UnicodeString* names =
        symbols.getMonths(count, icu::DateFormatSymbols::STANDALONE, icu::DateFormatSymbols::WIDE);
    return U_SUCCESS(status) && month >= 0 && month < count ? stringOf(names[month]) : String();
}

}  // namespace vornaset
