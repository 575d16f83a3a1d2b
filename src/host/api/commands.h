#pragma once
// Commands change documents. Made, given data and targets, processed, released; results are read from the result list.

#include "host/api/database.h"

class IPMCommand : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IPMCOMMAND;
    virtual void SetItemList(const UIDList& items) = 0;
    virtual const UIDList& GetItemList() = 0;
    virtual const UIDList& GetResultList() = 0;
};

/// Data of kImportResourceCmdBoss: which file comes into which database. The result list's first entry is the imported
/// item, which has no parent until it is put somewhere. The five numbers are 0.
class IImportResourceCmdData : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IIMPORTRESOURCECMDDATA;
    virtual void Set(IDataBase* database, const URI& resource, int32_t, int32_t, int32_t, int32_t, int32_t) = 0;
};

/// Data of kOpenDocumentCmdBoss. The result list's first entry is the opened document.
class IOpenFileCmdData : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IOPENFILECMDDATA;
    virtual void Set(const IDFile& file, int32_t, int32_t, int32_t firstFlag, int32_t secondFlag) = 0;
};

/// How each page of a new spread is made. Lengths are points.
struct NewPageRecord {
    PMReal width = 0;
    PMReal height = 0;
    PMPoint scale{1.0, 1.0};
    int32_t option = 0;
};

/// Data of kNewSpreadCmdBoss: `count` spreads of `pages` pages each at a position from 0, -1 for behind the last.
class INewSpreadCmdData : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_INEWSPREADCMDDATA;
    virtual void Set(const UIDRef& document, int32_t count, int32_t position, int32_t, int32_t pages, int32_t, int32_t,
                     int32_t, const NewPageRecord& page) = 0;
};

/// The new spread command's second data.
class INewSpreadReferenceCmdData : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_INEWSPREADREFERENCECMDDATA;
    virtual void Set(const UIDRef& reference, int32_t) = 0;
};

/// The new spread command's third data.
class INewSpreadOptionCmdData : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_INEWSPREADOPTIONCMDDATA;
    virtual void Set(int32_t) = 0;
};

namespace CmdUtils {
/// With a reference for the caller; null for a class that the host doesn't know.
IPMCommand* CreateCommand(ClassID commandClass);
ErrorCode ProcessCommand(IPMCommand* command);
}  // namespace CmdUtils

namespace ErrorUtils {
/// How the host's last action ended that tells it in no other way; 0 is success.
ErrorCode PMGetGlobalErrorCode();
}  // namespace ErrorUtils
