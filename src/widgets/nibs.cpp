#include "widgets/nibs.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QPointer>
#include <QtUiTools/QUiLoader>
#include <vector>

#include "support/log.h"
#include "support/messages.h"
#include "widgets/localizing.h"
#include "widgets/qt_text.h"

namespace vornaset {

namespace {

std::vector<std::shared_ptr<QWidget>>& heldObjects() {
    static std::vector<std::shared_ptr<QWidget>> objects;
    return objects;
}

/// The view may be put into another one, which then owns it as well: whoever ends first deletes it. One QPointer
/// for all: an analyser that can't follow Qt's counts takes the end of a copy for the end of what it shares.
std::shared_ptr<QWidget> shared(std::unique_ptr<QWidget> view) {
    const auto guard = std::make_shared<const QPointer<QWidget>>(view.get());
    return {view.release(), [guard](QWidget*) { delete guard->data(); }};
}

Nib nibOrMessage(const String& name, const Bundle& bundle) {
    Nib nib = nibWithName(name, bundle);
    if (nib.isNull()) msgBox("Error loading nib: %@", name);
    return nib;
}

enum class Holding : uint8_t { byTheOwnerAlone, byTheLibraryToo };

bool load(const Bundle& bundle, const String& name, NibOwner* owner, Holding holding) {
    const Nib nib = nibOrMessage(name, bundle);
    if (nib.isNull()) return false;
    std::unique_ptr<QWidget> view = nib.instantiate();
    if (!view) return true;
    const std::shared_ptr<QWidget> object = shared(std::move(view));
    if (holding == Holding::byTheLibraryToo) heldObjects().push_back(object);
    if (owner != nullptr) owner->takeTopLevelObject(object);
    return true;
}

}  // namespace

NibOwner::~NibOwner() = default;

std::unique_ptr<QWidget> Nib::instantiate() const {
    if (isNull()) return nullptr;
    QFile file(qtText(path_));
    if (!file.open(QIODevice::ReadOnly)) {
        MyLog("%@: %@", path_, textWithQt(file.errorString()));
        return nullptr;
    }
    QUiLoader loader;
    loader.clearPluginPaths();
    loader.setLanguageChangeEnabled(false);
    loader.setTranslationEnabled(false);
    loader.setWorkingDirectory(QFileInfo(file).dir());
    std::unique_ptr<QWidget> view(loader.load(&file));
    if (!view) MyLog("%@: %@", path_, textWithQt(loader.errorString()));
    return view;
}

Nib nibWithName(const String& name, const Bundle& bundle) {
    return Nib(bundle.pathForResource(name, "ui"));
}

bool loadNib(const Bundle& bundle, const String& name, NibOwner* owner) {
    return load(bundle, name, owner, Holding::byTheLibraryToo);
}

bool loadNib2(const Bundle& bundle, const String& name, NibOwner* owner) {
    return load(bundle, name, owner, Holding::byTheOwnerAlone);
}

bool loadNib(const String& name, NibOwner* owner) {
    return loadNib(gBundle, name, owner);
}

std::unique_ptr<QWidget> viewWithNibName(const String& name, const Bundle& bundle) {
    std::unique_ptr<QWidget> view = nibOrMessage(name, bundle).instantiate();
    localizeView(view.get());
    return view;
}

void releaseNibObjects() {
    heldObjects().clear();
}

}  // namespace vornaset
