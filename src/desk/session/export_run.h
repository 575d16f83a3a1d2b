#pragma once
// One export: the events that plug-ins hear and the pages that are written after them.

#include "desk/border/border.h"
#include "desk/desk.h"
#include "desk/text/composer.h"

namespace desk {

/// Event 0; for each page of each pass event 1, then the page; event 4. Event 4 is told after a failure too, so that a
/// plug-in is never left with an open run. simplifications is set to what was drawn plainer than the template asks, one
/// clause each. Throws InputError, PlugInFailure.
ExportOutcome runExport(Border& border, IDataBase* dataBase, const Document& document, Composer& composer,
                        FontLibrary& fonts, const ExportRequest& request, std::vector<std::string>& simplifications);

}  // namespace desk
