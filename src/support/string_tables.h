#pragma once
// The string table: from a key to the user's language. A key that the table lacks is its own text, so a plug-in that
// never loads a table still works and shows the keys.
//
// A table is an XML resource in gBundle, in one of three forms; a key is an element's name, its text that element's
// string value.
//   flat            <any> <key>text</key> ... </any>
//   by language     <strings> <de> <key>text</key> ... </de> <en> ... </en> </strings>
//   by entry        <strings2> <key> <de>text</de> <en>text</en> </key> ... </strings2>

#include <cstdint>

#include "support/bundle.h"
#include "support/values.h"

namespace vornaset {

/// Key to text. Null until a table is loaded; each load that succeeds replaces it whole.
extern Dictionary gStrings;

/// Sets gBundle to the bundle of that identifier, if the identifier isn't null and gBundle still is.
void setupBundle(const String& identifier);
/// Readies the window system (see AlertPresenter::prepare), then does the same.
void setupCocoa(const String& identifier);
/// Readies the window system. A bundle that isn't null replaces gBundle, also one that is set.
void setupCocoa(const Bundle& bundle);
/// Nothing: a place in the start sequence.
void setupLiterals();

/// -1 is the user's first preferred language, as far as it is German; any other is English then.
inline constexpr int64_t kPreferredLanguage = -1;
inline constexpr int64_t kEnglish = 0;
inline constexpr int64_t kFrench = 1;
inline constexpr int64_t kGerman = 3;
/// Loads the flat table "MyStrings_F" for kFrench, "MyStrings_D" for kGerman, "MyStrings_E" for any other number. When
/// there is no table then, neither this nor one from before, tries "MyStrings" in the other two forms; when that gave
/// none either, a message box says so.
void setupStrings(int64_t language);
/// Loads the flat table `name`. Of several entries of one key the last counts. Gives gStrings, which stays as it was
/// when the resource is missing (silently) or doesn't parse (a message box says why).
Dictionary setupStrings1(const String& name);
/// Loads the table `name` in the form by language or by entry, in the user's language by preferredLanguageCode. By
/// language: without a section in that language "en", then "de", then the root itself is read as the section. By entry:
/// without that language "en"; a key with neither is left out. A root of another name changes nothing. Otherwise as
/// setupStrings1.
Dictionary setupStrings2(const String& name);

/// The first entry of the user's preferred languages, cut to its first two characters. The entries are those of
/// LANGUAGE (parted by ":"), then what LC_ALL, LC_MESSAGES or LANG, the first that is set, names; LANGUAGE counts only
/// when that names a language at all, as elsewhere on this platform. "en" where nobody says anything, "C" and "POSIX"
/// included.
String preferredLanguageCode();

/// The table's text, else the key.
String stringForKey(const String& key);
String stringForKey(const char* key);
/// The table's text, else the default.
String stringForKey(const String& key, const String& defaultText);
String stringForKey(const char* key, const String& defaultText);
String stringForKey(const char* key, const char* defaultText);

/// The table's text for a label: a last ":", "?", "!" or "…" is no part of the key and is put behind the text again.
/// Null gives the empty string.
String localizeString(const String& text);

}  // namespace vornaset
