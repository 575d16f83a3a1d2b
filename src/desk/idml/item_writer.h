#pragma once
// Page items out, as text of the format.

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "desk/model/document.h"

namespace desk {

/// What names things in a package: ids of items, stories and spreads; empty for none.
using IdOf = std::function<std::string(Uid)>;

/// The attributes of an item that this system keeps and changes, under their names, without those that aren't set.
std::vector<std::pair<std::string, std::string>> itemAttributeTexts(const Document& document, const PageItem& item,
                                                                    const IdOf& idOf);

/// "<PathGeometry>...</PathGeometry>"
std::string pathXml(const Path& path);

/// A whole element for an item that no package has. `content` is what stands inside it behind its properties.
std::string newItemXml(const Document& document, const PageItem& item, const IdOf& idOf, const std::string& content);

/// The same for a spread with its pages.
std::string newSpreadXml(const Document& document, const Spread& spread, const IdOf& idOf, const std::string& content);

}  // namespace desk
