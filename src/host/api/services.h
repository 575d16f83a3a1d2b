#pragma once
// Stateless services that UtilsBoss hands out.

#include "host/api/commands.h"
#include "host/api/documents.h"
#include "host/api/text.h"

class IPageItemTypeUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IPAGEITEMTYPEUTILS;
    virtual bool IsGroup(const UIDRef& item) = 0;
    virtual bool IsGraphicFrame(const UIDRef& item) = 0;
    virtual bool IsGraphic(const UIDRef& item) = 0;
    virtual bool IsTextFrame(const UIDRef& item) = 0;
    virtual bool IsInline(const UIDRef& item) = 0;
};

class ILayoutUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ILAYOUTUTILS;
    /// No reference for the caller: good while the document is open. Null without an open document.
    virtual IDocument* GetFrontDocument() = 0;
    virtual void InvalidateViews(IDocument* document) = 0;  ///< null means the front document
};

class ITextUtils : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ITEXTUTILS;
    /// A new empty story of a text story class; its UID.
    virtual UID CreateStory(IDataBase* database, int32_t flag, ClassID storyClass) = 0;
    /// A command that makes the target's content equal to the source's and keeps the target's frames, with a reference
    /// for the caller; null when it can't.
    virtual IPMCommand* QueryCopyStoryCommand(const UIDRef& source, const UIDRef& target, int32_t flag) = 0;
    virtual bool IsOverset(ITextFrameList* frames) = 0;
};

namespace UtilsBoss {
/// A service with a reference for the caller; null for one that the host doesn't know.
IPMUnknown* QueryUtils(PMIID service);
}  // namespace UtilsBoss

/// A service for the time of a scope.
template <class T>
class Utils : public InterfacePtr<T> {
  public:
    Utils() : InterfacePtr<T>(Adopt::Reference, static_cast<T*>(UtilsBoss::QueryUtils(T::kDefaultIID))) {}
};
