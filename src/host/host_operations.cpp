#include "host/host_operations.h"

namespace vornaset {

PMString pmString(const String& text) {
    PMString result;
    result.SetCFString(text.view());
    return result;
}

WideString wideString(const String& text) {
    return WideString(std::u16string(text.view()));
}

String stringWithPMString(const PMString& text) {
    return String(text.View());
}

InterfacePtr<IDocument> documentOfDataBase(IDataBase* database) {
    if (!database) return {};
    return InterfacePtr<IDocument>(database, database->GetRootUID());
}

ErrorCode processOnItems(ClassID commandClass, const UIDList& items) {
    InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(commandClass));
    if (!command) return kSuccess;
    command->SetItemList(items);
    return CmdUtils::ProcessCommand(command.get());
}

}  // namespace vornaset
