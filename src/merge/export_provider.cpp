#include "merge/export_provider.h"

#include "host/plug_in_object.h"
#include "merge/merge_job.h"
#include "support/log.h"

namespace vornaset {

namespace {

enum ExportMessage : int32_t { kExportStarts = 0, kPageStarts = 1, kExportEnded = 4 };

ImplementationRecord gProviderRecord{kMyPDFExportProviderImpl,
                                     CreatekMyPDFExportProviderImpl_,
                                     DestroykMyPDFExportProviderImpl_,
                                     SizeOfkMyPDFExportProviderImpl_,
                                     {0, 0, 0},
                                     nullptr};

[[maybe_unused]] const bool gProviderIsLinked = (OfferedRecords::link(gProviderRecord), true);

}  // namespace

ImplementationRecord* GetkMyPDFExportProviderImpl_InterfaceFactory() {
    return &gProviderRecord;
}

IPMUnknown* MyPDFExportProvider::QueryInterface(PMIID interfaceId) {
    if (interfaceId != IID_IUNKNOWN) return owner_->QueryInterface(interfaceId);
    owner_->AddRef();
    return owner_;
}

void MyPDFExportProvider::AddRef() {
    owner_->AddRef();
}

void MyPDFExportProvider::Release() {
    owner_->Release();
}

int32_t MyPDFExportProvider::PDFProcessEvent(_t_PDFExportEvent* event, int32_t pageNum) {
    IDataBase* database = event->database;
    systemLog("pdfEvent: db=%lx, msg=%d, pageNum=%d", static_cast<const void*>(database), event->messageCode, pageNum);
    // A start is a start whether or not a run is open: it replaces the state.
    if (event->messageCode == kExportStarts) {
        const UID root = database ? database->GetRootUID() : kInvalidUID;
        gMergeArmed = setupFrameProcessing(UIDRef(database, root));
    } else if (gMergeArmed == 1) {
        if (event->messageCode == kExportEnded) cleanupFrameProcessing();
        if (event->messageCode == kPageStarts) processFrames(database, pageNum);
    }
    return 1;
}

}  // namespace vornaset

extern "C" {

IPMUnknown* CreatekMyPDFExportProviderImpl_(IPMUnknown* boss) {
    return new vornaset::MyPDFExportProvider(boss);
}

void DestroykMyPDFExportProviderImpl_(IPMUnknown* object) {
    delete static_cast<vornaset::MyPDFExportProvider*>(object);
}

size_t SizeOfkMyPDFExportProviderImpl_() {
    return sizeof(vornaset::MyPDFExportProvider);
}

}  // extern "C"
