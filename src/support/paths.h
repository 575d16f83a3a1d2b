#pragma once
// The places of files, and what is done with files. Paths are texts; where nothing else is said they are paths of the
// platform (POSIX) and relative ones count from the working folder. All operations are synchronous. A failure goes to
// the log, if anywhere, and the caller has the result to go on; nothing throws. A null path, and one that holds U+0000,
// names nothing. Symbolic links are followed by everything that asks what an item is; removing and moving act on the
// link itself.

#include <cstdint>
#include <optional>

#include "support/values.h"

namespace vornaset {

// Tests.

/// True when a file or a folder stands there.
bool pathExists(const String& path);
/// The same: anything counts, a folder too.
bool pathIsFile(const String& path);
bool pathIsFolder(const String& path);
/// True when the text behind the last "." of the path's last component equals the extension, case ignored. A name with
/// no "." is compared whole. False for null.
bool pathEndsWith(const String& path, const String& extension);
bool pathEndsWith(const String& path, const Array& extensions);
/// True for a size of 0, which a missing file has too, and for a creation date before 1970. Where the file system keeps
/// no creation date the size alone decides.
bool fileIsBusy(const String& path);
/// The same of a size in bytes and a creation date.
bool isBusy(int64_t size, const std::optional<Date>& created);

// Names. Nothing here looks at the file system.

/// The base alone for an empty or null name. Otherwise the name behind the base with one "/" between, and "." and the
/// extension behind it when that isn't null.
String stringByAppendingPathComponents(const String& base, const String& name, const String& extension);
String stringByAppendingPathComponents(const String& base, const Array& names);
/// The path with this extension in the place of its own, if it has one. A name such as ".profile" has none. A null
/// extension leaves the path without one.
String stringByReplacingPathExtension(const String& path, const String& extension);
/// The last component; "/" for the root. For a `withExtension` of 0 without its extension.
String lastPathComponent(const String& path, uint8_t withExtension);

// Places of the user.

/// The Documents folder: XDG_DOCUMENTS_DIR of the user's list of folders, else "Documents" in the home folder; with a
/// name, that name in it. Nothing is created.
String getDocumentsPath(const String& name, const String& extension);
/// The same for the temporary folder: the one that was set, else $TMPDIR if that is absolute, else "/tmp".
String temporaryPath(const String& name, const String& extension);
/// Sets the temporary folder of this process, for instance to one that is cleared afterwards; null goes back to the
/// user's. Not while another thread asks for it.
void setTemporaryFolder(const String& folder);

// Lists, in the order of localizedStandardCompare. A folder that can't be read gives an empty list; never null. An item
// whose name is no UTF-8 has no path here and is left out.

/// Full paths of the folders directly in `path`, hidden ones included.
Array foldersAtPath(const String& path);
/// Their names alone.
Array folderNamesAtPath(const String& path);
/// Full paths of the entries under `path`, files and folders: direct ones, or at any depth for a `deep` of 1. An entry
/// whose path relative to `path` begins with "." is left out, with all that is in it; one in a subfolder is not.
/// Linked folders are entries, and aren't entered.
Array filesAtPath(const String& path, uint8_t deep);

/// Gets a full path; 0 stops the walk.
using PathCallback = uint8_t (*)(const String& path, void* context);
/// Everything below `path` at every depth, a folder before what is in it, the entries of each folder in the order of
/// their names' bytes; left out is what filesAtPath leaves out. 0 when the callback stopped the walk, else 1. What is
/// there is read before the first call.
uint8_t EnumFolder(const String& path, PathCallback callback, void* context);
/// The same for the direct entries alone. 1 for what is no folder.
uint8_t EnumFolderFlat(const String& path, PathCallback callback, void* context);

// Attributes.

/// In bytes; 0 when the item is missing.
int64_t fileSizeForPath(const String& path);
/// Nothing when the item is missing.
std::optional<Date> modDateForPath(const String& path);
/// Seconds since 1970, UTC; 0 when the item is missing.
double modDateSecondsForPath(const String& path);
/// "2024-05-01 12:00:00 +0000"; null when the item is missing.
String dateStringForPath(const String& path);
/// The four-character type that a file brought along from an HFS volume, from the extended attributes in which Linux
/// shows it ("hfs.type", or the first four bytes of the finder information); 0 when it has none.
uint32_t fileHFSType(const String& path);

/// The number of a file's coloured label. It is kept as decimal text in the extended attribute "user.vornaset.label",
/// since file browsers here have no common place for one; copies and moves take it along where the file system can.
using eLabelColor = uint32_t;
/// 0 when the item is missing or has no label.
eLabelColor labelColorForPath(const String& path);
/// Sets the label when the item exists; 0 takes it away. An error goes to the log.
void setLabelColorForPath(const String& path, eLabelColor label);

// Four-character codes: four bytes, the first one highest, in Mac OS Roman.

String stringWithOSType(uint32_t code);
/// 0 for a text that isn't four characters of Mac OS Roman.
uint32_t OSTypeWithString(const String& text);
/// From one byte with the length and as many bytes of Mac OS Roman. Null for a null pointer.
String stringWithPascalString(const uint8_t* bytes);

// Creating, moving, deleting. A folder is removed and copied with all that is in it. A copy keeps modification date,
// permissions and extended attributes; one that fails half way is taken away again.

/// True when something stands at the path, whatever it is, or the folder was made, missing parents included.
bool createDir(const String& path);
/// The same for the name in `parent`, or `parent` itself for an empty name. Gives the path, whatever came of it.
String createDir(const String& parent, const String& name);
void createDirectories(const String& path);
/// False when nothing was there or it can't be removed. Says nothing to the log.
bool removeItem(const String& path);
/// True when nothing stands at the path any more; a missing item is no failure. An error is logged with the path.
bool removeFile(const String& path);
/// Null when nothing stands at the path any more, else the error's description, which is logged too.
String removeItemAtPath(const String& path);
/// Copies a file that has changed: nothing happens and the result is false when source and target have the same
/// modification date. A `dst` that is a folder means the same name in it. True when the copy was made.
bool copyFile(const String& src, const String& dst);
/// What stands at `dst` is removed first, even when it is the source itself.
void copyItemToPath(const String& src, const String& dst);
/// Makes the folder and copies to the same name in it. Gives the new path, whatever came of it.
String copyFileObject(const String& src, const String& folder);
/// Nothing for paths that name the same place. Otherwise what stands at `dst` is removed first, also when there is no
/// source.
void moveItemToPath(const String& src, const String& dst);
/// Makes the folder and moves to the same name in it. Gives the new path; null if nothing moved.
String moveFileObject(const String& src, const String& folder);

// Spellings. The volumes that HFS paths begin with: see volumes.h.

/// A POSIX path for an HFS path ("Volume:folder:name"). The text itself when it has fewer than two characters or no
/// ":", begins with "/", or doesn't begin with the name of a volume.
String pathWithHFS(const String& text);
/// The same for any text that doesn't begin with "/", in NFC. A relative POSIX path comes back, unless its first
/// component is a volume.
String pathWithString(const String& text);
/// The HFS path of an absolute POSIX path, in NFC; other texts are brought to NFC alone. A mount point gives the
/// volume's name with ":" behind it. "." and ".." are resolved by the text.
String hfsPathWithString(const String& text);

/// What an alias points at. Aliases are symbolic links and the file browsers' link files (a desktop entry of the type
/// "Link" whose URL is a local file that exists). Anything else, and an alias that points at nothing, gives the path
/// as it is; null gives null.
String resolvePath(const String& path);

}  // namespace vornaset
