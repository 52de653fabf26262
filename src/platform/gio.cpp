// SPDX-License-Identifier: MIT
#include "platform/gio.h"

#include "platform/childenvironment.h"

#include <QtGlobal>

#include <dlfcn.h>

namespace platform {

namespace {

const Gio *openGio()
{
    // With its remote file systems GIO would turn "sftp://host/file" into a path under a FUSE mount when that
    // is the mounted share, and ask other processes about every address. Handlers get the address as it was
    // written.
    if (!qEnvironmentVariableIsSet("GIO_USE_VFS"))
        setOwnVariable("GIO_USE_VFS", "local");

    void *library = ::dlopen("libgio-2.0.so.0", RTLD_NOW | RTLD_LOCAL);
    if (!library)
        return nullptr;
    static Gio functions;
    bool complete = true;
#define PW_FIND(name)                                                                                        \
    functions.name = reinterpret_cast<decltype(functions.name)>(::dlsym(library, #name));                    \
    complete = complete && functions.name;
    PW_GIO_FUNCTIONS(PW_FIND)
#undef PW_FIND
    return complete ? &functions : nullptr;
}

} // namespace

const Gio *gio()
{
    static const Gio *const functions = openGio();
    return functions;
}

} // namespace platform
