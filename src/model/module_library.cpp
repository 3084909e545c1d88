#include "model/module_library.h"

#include <QByteArray>
#include <QFile>
#include <dlfcn.h>
#include <unistd.h>

#ifndef ORMIVANE_MODULE_DIR
#define ORMIVANE_MODULE_DIR "../lib/ormivane"
#endif

namespace orm {

namespace {

// The folder of the running executable, with its slash.
QByteArray executableFolder()
{
    char path[4096];
    const ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n <= 0)
        return {};
    QByteArray folder(path, int(n));
    return folder.left(folder.lastIndexOf('/') + 1);
}

}  // namespace

ModuleLibrary::ModuleLibrary(const char* name)
{
    const QByteArray file = QByteArray("lib") + name + ".so";
    const QByteArray folder = executableFolder();
    QByteArray failures;
    for (const QByteArray& path : {folder + file, folder + ORMIVANE_MODULE_DIR "/" + file}) {
        if (access(path.constData(), F_OK) != 0)
            continue;
        // The libraries it pulls in stay mapped after dlclose: Qt's own global
        // objects in them are torn down at exit, as for any linked library.
        handle_ = dlopen(path.constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
        if (handle_)
            return;
        failures += (failures.isEmpty() ? "" : "; ") + QByteArray(dlerror());
    }
    error_ = failures.isEmpty() ? QStringLiteral("the module %1 is not installed beside %2")
                                      .arg(QFile::decodeName(file), QFile::decodeName(folder))
                                : QString::fromLocal8Bit(failures);
}

ModuleLibrary::~ModuleLibrary()
{
    if (handle_)
        dlclose(handle_);
}

void* ModuleLibrary::symbol(const char* name)
{
    if (!handle_)
        return nullptr;
    void* entry = dlsym(handle_, name);
    if (!entry)
        error_ = QString::fromLocal8Bit(dlerror());
    return entry;
}

}  // namespace orm
