// SPDX-License-Identifier: MIT
#include "platform/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace platform {

namespace {

bool install(const QLocale &locale, const QString &name, const QString &folder)
{
    auto *translator = new QTranslator(QCoreApplication::instance());
    // The template, which stands for English, loads as well but is empty.
    if (translator->load(locale, name, QStringLiteral("_"), folder) && !translator->isEmpty()
        && QCoreApplication::installTranslator(translator))
        return true;
    delete translator;
    return false;
}

} // namespace

void installTranslations(const QLocale &locale)
{
    if (locale.language() == QLocale::English || locale.language() == QLocale::C)
        return;
    if (install(locale, QStringLiteral("pondwicket"), QStringLiteral(":/i18n")))
        install(locale, QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath));
}

} // namespace platform
