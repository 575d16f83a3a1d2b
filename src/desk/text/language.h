#pragma once
// The languages of text: their names in layout documents, their tags, their hyphenation dictionaries.

#include <string>
#include <vector>

namespace desk {

/// What a language's name in a document ("$ID/German: 2006 Reform", "$ID/de_DE_2006") means.
struct LanguageName {
    std::string tag;                        ///< BCP 47; empty for no language and for a name that isn't known
    std::vector<std::string> dictionaries;  ///< stems of dictionary files, best first ("hyph_de_DE", "hyph_de")
};

/// Never throws; takes the name with or without "$ID/" and "Language/", a colon also as "%3a".
LanguageName languageNamed(const std::string& name);

}  // namespace desk
