#include "host/picture_import.h"

#include "host/api/host.h"
#include "host/host_operations.h"

namespace vornaset {

UID importFile(IDataBase* database, const String& path) {
    InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(kImportResourceCmdBoss));
    InterfacePtr<IImportResourceCmdData> data(command.get());
    Utils<IURIUtils> uris;
    if (!data || !uris) return kInvalidUID;
    data->Set(database, uris->IDFileToURI(IDFileWithPath(path)), 0, 0, 0, 0, 0);
    if (CmdUtils::ProcessCommand(command.get()) != kSuccess) return kInvalidUID;
    return command->GetResultList()[0];
}

void setPDFPlacePage(int32_t page) {
    InterfacePtr<IPDFPlacePrefs> preferences(sessionWorkspace().get());
    if (preferences) preferences->SetPage(page);
}

}  // namespace vornaset
