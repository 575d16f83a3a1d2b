#pragma once
// IDML in: a package becomes a document.

#include <memory>
#include <string>

#include "desk/model/document.h"

namespace desk {

/// Reads a package (.idml) or a snippet (.idms) from a file. What isn't understood is passed over, told in
/// Document::notes and kept in Document::package. Throws InputError, one sentence with file, member and line, for what
/// can't be used: no package, broken XML, a part or story that is missing, a circle of threaded frames, of style
/// parents, of masters or of anchored frames, a page without size, a version that can't be read.
std::unique_ptr<Document> readDocument(const std::string& path);

/// The same from memory; `name` stands for the file in messages and becomes Document::name.
std::unique_ptr<Document> readDocument(std::string bytes, const std::string& name);

}  // namespace desk
