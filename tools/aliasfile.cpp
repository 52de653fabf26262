// SPDX-License-Identifier: MIT
// Alias files for scripts: "aliasfile make TARGET FILE" writes one, "aliasfile resolve FILE" prints where it
// leads.
#include "platform/aliasresolver.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

#include <unistd.h>

namespace {

using namespace platform;

int fail(const char *words, const Error &error)
{
    std::printf("%s%s\n", words, error.fullDescription().toUtf8().constData());
    return EXIT_FAILURE;
}

QByteArray fromHere(const char *path)
{
    char folder[4096];
    return absolutePath(path, ::getcwd(folder, sizeof folder) ? folder : "/");
}

int make(const char *target, const char *file)
{
    Error error;
    return writeAliasFile(fromHere(target), fromHere(file), &error) ? EXIT_SUCCESS
                                                                    : fail("Failed to create alias: ", error);
}

int resolve(const char *file)
{
    Error error;
    std::optional<AliasTarget> target = resolveAliasTarget(fromHere(file), &error);
    if (!target) {
        aliasResolver().waitForSearch();
        target = resolveAliasTarget(fromHere(file), &error);
    }
    if (!target)
        return fail("Failed to resolve alias: ", error);
    std::puts(target->path.constData());
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QByteArrayView task = argc > 1 ? argv[1] : "";
    if (task == "make" && argc == 4)
        return make(argv[2], argv[3]);
    if (task == "resolve" && argc == 3)
        return resolve(argv[2]);
    std::fputs("usage: aliasfile make TARGET FILE\n       aliasfile resolve FILE\n", stderr);
    return 2;
}
