// SPDX-License-Identifier: MIT
#include "platform/workspace.h"

#include "platform/aliasfile.h"
#include "platform/aliasresolver.h"
#include "platform/applauncher.h"
#include "platform/background.h"
#include "platform/contenttype.h"
#include "platform/gio.h"
#include "platform/trust.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

const QString gioDomain = QStringLiteral("GIO");

GioPointer<GFile> fileAt(const QByteArray &path)
{
    return GioPointer<GFile>(gio()->g_file_new_for_path(path.constData()));
}

QByteArray contentTypeOf(GFile *file)
{
    const GioPointer<GFileInfo> info(gio()->g_file_query_info(file, G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE,
                                                              G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    return info ? QByteArray(gio()->g_file_info_get_content_type(info.get())) : QByteArray();
}

void openWithHandler(const QByteArray &path, const QByteArray &knownType = {})
{
    const GioPointer<GFile> file = fileAt(path);
    const QByteArray type = knownType.isEmpty() ? contentTypeOf(file.get()) : knownType;
    if (type.isEmpty())
        return;
    const GioPointer<GAppInfo> handler(gio()->g_app_info_get_default_for_type(type.constData(), false));
    const GioPointer<char> address(gio()->g_file_get_uri(file.get()));
    if (handler)
        launchApplication(handler.get(), {address.get()});
}

void openDesktopFile(const QByteArray &path)
{
    if (!mayLaunchDesktopFile(path)) {
        // Not by its own content type: whoever is registered for that might run it.
        openWithHandler(path, "text/plain");
        return;
    }
    const GioPointer<GDesktopAppInfo> application(
        gio()->g_desktop_app_info_new_from_filename(path.constData()));
    if (application)
        launchApplication(reinterpret_cast<GAppInfo *>(application.get()), {});
}

bool isExecutableFile(const QByteArray &path)
{
    struct stat status;
    return ::stat(path.constData(), &status) == 0 && S_ISREG(status.st_mode)
        && ::access(path.constData(), X_OK) == 0;
}

// "AppRun", or in a folder "Name.app" the file "Name"; empty when there is neither.
QByteArray programOfFolder(const QByteArray &folder)
{
    QByteArrayList names = {"AppRun"};
    if (folder.endsWith(".app"))
        names << folder.sliced(folder.lastIndexOf('/') + 1).chopped(4);
    for (const QByteArray &name : names) {
        const QByteArray program = folder + '/' + name;
        if (isExecutableFile(program))
            return program;
    }
    return {};
}

void open(const QByteArray &path)
{
    struct stat status;
    if (::stat(path.constData(), &status) != 0)
        return;
    const bool isFolder = S_ISDIR(status.st_mode);
    if (!isFolder && !S_ISREG(status.st_mode))
        return; // a pipe or device, which nobody should read
    if (!isFolder && isAliasFile(path))
        return; // it leads nowhere; what it says is for us alone
    QByteArray program;
    if (isFolder)
        program = programOfFolder(path);
    else if (path.endsWith(".desktop"))
        return openDesktopFile(path);
    else if (isApplicationFile(path))
        program = path;
    if (program.isEmpty())
        openWithHandler(path);
    else
        launchProgram({program});
}

void trash(const QString &path, const std::function<void(const Error &)> &onFailure)
{
    GError *failure = nullptr;
    if (gio()->g_file_trash(fileAt(QFile::encodeName(path)).get(), nullptr, &failure))
        return;
    const GioPointer<GError> owner(failure);
    const Error error = {gioDomain, failure->code, QString::fromUtf8(failure->message), path};
    runOnInterfaceThread([onFailure, error] { onFailure(error); });
}

} // namespace

void openFile(const QString &path)
{
    if (!gio())
        return;
    const QByteArray name = QFile::encodeName(path);
    const auto target = resolveAliasTarget(name, nullptr);
    if (target)
        refreshAlias(name);
    // The resolver gives up on places that might not answer; the background may wait for them.
    runInBackground([place = target ? target->path : name] { open(place); });
}

void moveToTrash(const QString &path, const std::function<void(const Error &)> &onFailure)
{
    if (gio() && runInBackground([path, onFailure] { trash(path, onFailure); }))
        return;
    const Error error = {gioDomain, G_IO_ERROR_NOT_SUPPORTED, QStringLiteral("There is no Trash."), path};
    runOnInterfaceThread([onFailure, error] { onFailure(error); });
}

bool isWithoutTrash(const Error &error)
{
    return error.domain == gioDomain && error.code == G_IO_ERROR_NOT_SUPPORTED;
}

} // namespace platform
