// SPDX-License-Identifier: MIT
#include "platform/filepanel.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPixmapCache>
#include <QSplitter>
#include <QStandardPaths>
#include <QUrl>

namespace platform {

namespace {

constexpr int sidebarWidth = 150; // points; the toolkit cuts names of nine letters off

/// The desktops' own panels take either a file or a folder, never both; so does the toolkit's, whose button
/// goes into a selected folder. Here it takes it. A double click still goes in, and so does a typed path with
/// a slash at its end.
class FileOrFolderDialog : public QFileDialog
{
public:
    using QFileDialog::QFileDialog;
    const QString &chosen() const { return m_chosen; }

protected:
    void accept() override
    {
        const QStringList files = selectedFiles();
        const auto *name = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        const bool entersFolder =
            name && (name->text().endsWith(QLatin1Char('/')) || name->text() == QLatin1String(".."));
        if (entersFolder || files.size() != 1 || !QFileInfo::exists(files.constFirst())) {
            QFileDialog::accept();
            return;
        }
        m_chosen = files.constFirst();
        QDialog::accept();
    }

private:
    QString m_chosen;
};

/// Home, documents, and wherever applications are installed.
QList<QUrl> sidebarPlaces()
{
    QStringList folders = {QDir::homePath(),
                           QStandardPaths::writableLocation(QStandardPaths::DesktopLocation),
                           QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
                           QStandardPaths::writableLocation(QStandardPaths::DownloadLocation),
                           QDir::homePath() + QLatin1String("/Applications")};
    folders += QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    folders.removeDuplicates();
    QList<QUrl> places;
    for (const QString &folder : std::as_const(folders)) {
        if (QFileInfo(folder).isDir())
            places.append(QUrl::fromLocalFile(folder));
    }
    return places;
}

void prepare(QFileDialog &dialog, const QString &title)
{
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setWindowTitle(title);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setSidebarUrls(sidebarPlaces());
    if (auto *columns = dialog.findChild<QSplitter *>())
        columns->setSizes({sidebarWidth, dialog.width() - sidebarWidth});
}

class DialogPanel : public FilePanel
{
public:
    std::optional<QString> chooseFileOrFolder(const QString &title) override
    {
        FileOrFolderDialog dialog(nullptr, title, m_folder);
        prepare(dialog, title);
        return run(dialog) ? std::optional(dialog.chosen()) : std::nullopt;
    }

    std::optional<QString> chooseFile(const QString &title) override
    {
        QFileDialog dialog(nullptr, title, m_folder);
        prepare(dialog, title);
        return run(dialog) ? std::optional(dialog.selectedFiles().constFirst()) : std::nullopt;
    }

private:
    bool run(QFileDialog &dialog)
    {
        // Every panel makes its icons anew, and the toolkit would keep what it draws of them, up to 10 MB,
        // under keys that no later panel asks for.
        const int cacheLimit = QPixmapCache::cacheLimit();
        QPixmapCache::setCacheLimit(0);
        const bool accepted = dialog.exec() == QDialog::Accepted;
        QPixmapCache::setCacheLimit(cacheLimit);
        m_folder = dialog.directory().absolutePath();
        return accepted;
    }

    QString m_folder = QDir::homePath(); ///< where the last panel was left
};

} // namespace

std::unique_ptr<FilePanel> makeFilePanel()
{
    return std::make_unique<DialogPanel>();
}

} // namespace platform
