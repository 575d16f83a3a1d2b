#include "host/plug_in_object.h"

#include <utility>

#include "host/resource_access.h"

namespace vornaset {

namespace {

// Constant-initialised, so that they stand before the first static initialiser of any unit links its record.
constinit ImplementationRecord* headOfImplementations = nullptr;
constinit BossRecord* headOfBosses = nullptr;

}  // namespace

/// Nothing sets it: the compiler and the linker can't know, and so must keep what the branch names.
int16_t gDontDeadStrip = 0;

PlugIn gPlugIn;

void OfferedRecords::link(ImplementationRecord& record) {
    record.next = std::exchange(headOfImplementations, &record);
}

void OfferedRecords::link(BossRecord& record) {
    record.next = std::exchange(headOfBosses, &record);
}

ImplementationRecord* OfferedRecords::implementations() {
    return headOfImplementations;
}

BossRecord* OfferedRecords::bosses() {
    return headOfBosses;
}

MBaseResourceAccess::ResourceFileInfo& MBaseResourceAccess::resourceFileInfo() {
    static constinit ResourceFileInfo info;
    return info;
}

PlugIn::~PlugIn() {
    DontDeadStrip();
    delete std::exchange(MBaseResourceAccess::resourceFileInfo().file, nullptr);
}

void PlugIn::Load(const IDFile& resourceFile, void* moduleHandle) {
    auto* file = new ResourceFile(resourceFile);
    MBaseResourceAccess::ResourceFileInfo& info = MBaseResourceAccess::resourceFileInfo();
    delete std::exchange(info.file, file);
    if (!moduleHandle) return;
    info.isUnopened = 0;
    info.hasHandle = 1;
    info.handle = moduleHandle;
}

IDFile PlugIn::GetResourceFile() {
    return MBaseResourceAccess(MBaseResourceAccess::resourceFileInfo()).GetResourceFile();
}

void PlugIn::Register(uint32_t plugIn) {
    InterfacePtr<IObjectModel> model(::GetExecutionContextSession());
    if (!model) return;
    for (const BossRecord* boss = headOfBosses; boss; boss = boss->next) {
        if (boss->data) model->RegisterBoss(plugIn, boss->identifier, boss->data);
    }
    for (const ImplementationRecord* offer = headOfImplementations; offer; offer = offer->next) {
        model->RegisterImplementation(plugIn, offer->identifier, offer->create, offer->destroy, offer->sizeOf,
                                      offer->words[0], offer->words[1], offer->words[2]);
    }
}

void DontDeadStrip() {
    if (gDontDeadStrip != 0) GetkMyPDFExportProviderImpl_InterfaceFactory();
}

}  // namespace vornaset

extern "C" IPlugIn* GetPlugIn() {
    return &vornaset::gPlugIn;
}
