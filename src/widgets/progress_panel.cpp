#include "widgets/progress_panel.h"

#include <QtWidgets/QAbstractButton>
#include <utility>

#include "support/messages.h"
#include "widgets/localizing.h"
#include "widgets/nibs.h"
#include "widgets/views.h"

namespace vornaset {

namespace {

constexpr const char* kNibName = "ProgressPanel";

}  // namespace

std::unique_ptr<ProgressPanel> ProgressPanel::make() {
    const Nib nib = nibWithName(kNibName, gBundle);
    if (nib.isNull()) msgBox("Error loading nib: %@", kNibName);
    std::unique_ptr<QWidget> window = nib.instantiate();
    if (!window) return nullptr;
    localizeWindow(window.get());
    return std::unique_ptr<ProgressPanel>(new ProgressPanel(std::move(window)));
}

ProgressPanel::ProgressPanel(std::unique_ptr<QWidget> window)
    : window_(std::move(window)),
      panel_(window_.get()),
      textField_(viewWithIdentifier(window_.get(), "message")),
      indicator_(qobject_cast<QProgressBar*>(viewWithIdentifier(window_.get(), "bar"))) {
    auto* stop = qobject_cast<QAbstractButton*>(viewWithIdentifier(window_.get(), "stop"));
    if (stop == nullptr) return;
    QObject::connect(stop, &QAbstractButton::clicked, window_.get(), [this] { panel_.abortModal(); });
}

bool runProgressWithArray(const Array& items, ProgressCallback callback, void* context) {
    const std::unique_ptr<ProgressPanel> progress = ProgressPanel::make();
    if (!progress) return false;
    runProgressWithArray(items, callback, progress->panel(), progress->textField(), progress->indicator(), context);
    return true;
}

}  // namespace vornaset
