#pragma once
// Session, documents and their lists. Indices count from 0.

#include "host/api/database.h"

class IDocument : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IDOCUMENT;
    virtual UIDRef GetDocWorkSpace() = 0;
    virtual void GetName(PMString& name) = 0;
};

class IDocumentList : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IDOCUMENTLIST;
    virtual int32_t GetDocCount() = 0;
    /// No reference for the caller: good while the document is open. Null outside the list.
    virtual IDocument* GetNthDoc(int32_t index) = 0;
};

class IApplication : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IAPPLICATION;
    virtual IDocumentList* QueryDocumentList() = 0;
};

/// The windows of one document, an interface of the document. Absent in a host without windows.
class IPresentationList : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IPRESENTATIONLIST;
    virtual void CloseAll() = 0;
};

/// How imported PDF files are read from now on; an interface of the session's workspace.
class IPDFPlacePrefs : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IPDFPLACEPREFS;
    virtual int32_t GetPage() = 0;  ///< from 1; 1 in a new session
    /// Stays in force until it is set again. A page that a file of several pages doesn't have makes its import fail; a
    /// file of one page is imported whatever stands here.
    virtual void SetPage(int32_t page) = 0;
};

/// What happens around a PDF export; an interface of the session's workspace.
class IPDFExportViewPrefs : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IPDFEXPORTVIEWPREFS;
    virtual bool GetShowAfterExport() = 0;
    virtual void SetShowAfterExport(bool show) = 0;
};

class IExecutionContextSession : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IEXECUTIONCONTEXTSESSION;
    virtual IApplication* QueryApplication() = 0;
    /// The session's settings with a reference for the caller; null in a host that keeps none.
    virtual IPMUnknown* QueryWorkspace() { return nullptr; }
};

class IPageList : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IPAGELIST;
    virtual int32_t GetPageCount() = 0;
    virtual UID GetNthPageUID(int32_t index) = 0;
    virtual int32_t GetPageIndex(UID page) = 0;  ///< -1 for a page that isn't in the list
};

class ISpreadList : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ISPREADLIST;
    virtual int32_t GetSpreadCount() = 0;
    virtual UID GetNthSpreadUID(int32_t index) = 0;
    virtual int32_t GetSpreadIndex(UID spread) = 0;  ///< -1 for none
};

class IDocumentLayer : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IDOCUMENTLAYER;
    virtual PMString GetName() = 0;
    virtual bool IsVisible() = 0;
    virtual int16_t IsPrintable() = 0;  ///< printable when it equals 1
    virtual void SetLocked(bool locked) = 0;
};

/// The items of one document layer on one spread. Its IHierarchy holds them, bottom first.
class ISpreadLayer : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ISPREADLAYER;
    virtual UID GetDocLayerUID() = 0;
};

enum class LayerPart { Content, Guides };

class ISpread : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ISPREAD;
    virtual int32_t GetNumPages() = 0;
    virtual int32_t GetPageIndex(UID page) = 0;  ///< inside the spread, -1 for none
    /// Bounds of all pages under a matrix, in points.
    virtual PMRect GetPagesBounds(const PMMatrix& matrix) = 0;
    /// The spread layer of a document layer with a reference for the caller; null when there is none.
    virtual ISpreadLayer* QueryLayer(IDocumentLayer* layer, LayerPart part) = 0;
};

/// Entry 0 is the host's own layer.
class ILayerList : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ILAYERLIST;
    virtual int32_t GetCount() = 0;
    /// With a reference for the caller; null outside the list.
    virtual IDocumentLayer* QueryLayer(int32_t index) = 0;
    virtual UID FindByName(const PMString& name) = 0;  ///< 0 for none
};

class IStoryList : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_ISTORYLIST;
    virtual int32_t GetStoryCount() = 0;
    virtual UIDRef GetNthStory(int32_t index) = 0;  ///< UIDRef::gNull outside the list
};

/// Saves and closes one document. Each action has a question that is asked first; the action follows only when the
/// answer is true. What came of an action is told by ErrorUtils::PMGetGlobalErrorCode.
class IDocumentFileHandler : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IDOCUMENTFILEHANDLER;
    virtual bool CanSave(const UIDRef& document) = 0;  ///< it has a file
    virtual void Save(const UIDRef& document, K2::UIFlags flags) = 0;
    virtual bool CanSaveAs(const UIDRef& document) = 0;
    /// From now on this is the document's file.
    virtual void SaveAs(const UIDRef& document, const IDFile& file, K2::UIFlags flags, int32_t, int32_t) = 0;
    virtual bool CanSaveACopy(const UIDRef& document) = 0;
    virtual void SaveACopy(const UIDRef& document, const IDFile& file, K2::UIFlags flags, int32_t, int32_t) = 0;
    virtual void Close(const UIDRef& document, K2::UIFlags flags, int32_t, int32_t) = 0;
};
