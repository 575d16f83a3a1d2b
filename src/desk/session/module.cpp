#include "desk/session/module.h"

#include <dlfcn.h>

#include "desk/model/document.h"
#include "host/api/plug_in.h"

namespace desk {

void loadModule(const std::string& path, uint32_t plugInId) {
    void* const handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_NODELETE);
    if (!handle) {
        const char* const reason = ::dlerror();
        throw InputError("the plug-in " + path + " can't be loaded (" + (reason ? reason : "no reason told") +
                         "): check that the installation is whole");
    }
    const auto getPlugIn = reinterpret_cast<GetPlugInFunction>(::dlsym(handle, "GetPlugIn"));
    IPlugIn* const plugIn = getPlugIn ? getPlugIn() : nullptr;
    if (!plugIn) throw InputError(path + " offers no plug-in: name a module that exports GetPlugIn");
    plugIn->SetPlugInID(plugInId);
    plugIn->Load(IDFile(path), handle);
    plugIn->Startup();
    plugIn->Initialize();
    plugIn->Register(plugInId);
}

}  // namespace desk
