#include "host/host_operations.h"

namespace vornaset {

InterfacePtr<IDocument> documentOfDataBase(IDataBase* database) {
    if (!database) return {};
    return InterfacePtr<IDocument>(database, database->GetRootUID());
}

InterfacePtr<IPMUnknown> sessionWorkspace() {
    IExecutionContextSession* session = ::GetExecutionContextSession();
    return InterfacePtr<IPMUnknown>(Adopt::Reference, session ? session->QueryWorkspace() : nullptr);
}

ErrorCode processOnItems(ClassID commandClass, const UIDList& items) {
    InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(commandClass));
    if (!command) return kSuccess;
    command->SetItemList(items);
    return CmdUtils::ProcessCommand(command.get());
}

}  // namespace vornaset
