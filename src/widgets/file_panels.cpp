#include "widgets/file_panels.h"

#include <QtWidgets/QGridLayout>
#include <QtWidgets/QToolButton>

#include "support/bundle.h"
#include "support/string_tables.h"
#include "widgets/nibs.h"
#include "widgets/qt_text.h"

namespace vornaset {

FilePanel::FilePanel(AcceptMode mode) {
    setOption(QFileDialog::DontUseNativeDialog);
    setAcceptMode(mode);
}

void FilePanel::addLine(QWidget& widget) {
    auto* grid = qobject_cast<QGridLayout*>(layout());
    if (grid != nullptr) {
        grid->addWidget(&widget, grid->rowCount(), 0, 1, grid->columnCount());
    } else {
        layout()->addWidget(&widget);
    }
}

void FilePanel::setAccessoryView(std::unique_ptr<QWidget> view) {
    delete accessory_.data();
    accessory_ = view.release();
    if (accessory_) addLine(*accessory_);
}

OpenPanel::OpenPanel() : FilePanel(AcceptOpen), options_(new QToolButton(this)) {
    setFileMode(ExistingFile);
    options_->setObjectName("disclosure");
    options_->setText(qtTitle(localizeString("options")));
    options_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    options_->setAutoRaise(true);
    options_->setCheckable(true);
    options_->hide();
    addLine(*options_);
    connect(options_, &QToolButton::toggled, this, [this](bool isDisclosed) {
        options_->setArrowType(isDisclosed ? Qt::DownArrow : Qt::RightArrow);
        if (accessoryView() != nullptr) accessoryView()->setVisible(isDisclosed);
    });
}

void OpenPanel::setAccessoryView(std::unique_ptr<QWidget> view) {
    FilePanel::setAccessoryView(std::move(view));
    options_->setVisible(accessoryView() != nullptr);
    setAccessoryViewDisclosed(Disclosure::hidden);
}

void OpenPanel::setAccessoryViewDisclosed(Disclosure disclosure) {
    const bool isDisclosed = disclosure == Disclosure::shown;
    options_->setArrowType(isDisclosed ? Qt::DownArrow : Qt::RightArrow);
    options_->setChecked(isDisclosed);
    if (accessoryView() != nullptr) accessoryView()->setVisible(isDisclosed);
}

bool OpenPanel::isAccessoryViewDisclosed() const {
    return accessoryView() != nullptr && options_->isChecked();
}

SavePanel::SavePanel() : FilePanel(AcceptSave) {
    setFileMode(AnyFile);
}

QWidget* setAccessoryView(OpenPanel* panel, const String& nibName) {
    if (panel == nullptr) return nullptr;
    panel->setAccessoryView(viewWithNibName(nibName, gBundle));
    panel->setAccessoryViewDisclosed(Disclosure::shown);
    return panel->accessoryView();
}

QWidget* setAccessoryView(SavePanel* panel, const String& nibName) {
    if (panel == nullptr) return nullptr;
    panel->setAccessoryView(viewWithNibName(nibName, gBundle));
    return panel->accessoryView();
}

}  // namespace vornaset
