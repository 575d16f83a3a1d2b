#pragma once
// Nibs: windows and views as resources of a bundle, files of the type "ui" whose texts are keys. They are what the form
// designer of the window system writes; no plug-in of the designer is loaded.

#include <QtWidgets/QWidget>
#include <memory>

#include "support/bundle.h"
#include "support/values.h"

namespace vornaset {

/// A handle on the file of a nib, or null.
class Nib {
  public:
    Nib() = default;
    explicit Nib(String path) : path_(std::move(path)) {}

    bool isNull() const { return path_.isNull(); }
    const String& path() const { return path_; }
    /// A new view as the file describes it, with its texts still keys. Null for a null nib and for a file that can't be
    /// read or describes nothing; the log says why.
    std::unique_ptr<QWidget> instantiate() const;

  private:
    String path_;
};

/// Who gets what is made from a nib.
class NibOwner {
  public:
    virtual ~NibOwner();
    /// The nib's top-level object, its texts still keys. It lives as long as somebody holds on to it, or the widget
    /// that it was put into does.
    virtual void takeTopLevelObject(const std::shared_ptr<QWidget>& object) = 0;
};

/// Null when the bundle has no such nib; nothing is shown.
Nib nibWithName(const String& name, const Bundle& bundle);
/// Makes the nib's object and hands it to the owner, if there is one. The library holds on to it too, so it outlives
/// the call whatever the owner does, until releaseNibObjects. When the nib can't be found a message box says so, and
/// the result is false; in all other cases it is true.
bool loadNib(const Bundle& bundle, const String& name, NibOwner* owner);
/// The same, with nobody but the owner to hold on to the object.
bool loadNib2(const Bundle& bundle, const String& name, NibOwner* owner);
/// The first form with gBundle.
bool loadNib(const String& name, NibOwner* owner);
/// The nib's view, through localizeView. Null, and a message box, when the nib can't be found.
std::unique_ptr<QWidget> viewWithNibName(const String& name, const Bundle& bundle);

/// Lets go of what loadNib holds. Before the window system goes.
void releaseNibObjects();

}  // namespace vornaset
