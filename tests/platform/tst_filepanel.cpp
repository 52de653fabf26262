// SPDX-License-Identifier: MIT
#include "platform/filepanel.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

class TestFilePanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void folderOrFileIsTaken();
    void typedFolderWithSlashIsEntered();
    void importTakesNoFolder();
    void cancelled();

private:
    QTemporaryDir m_folder;
    QString at(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    /// Does in the open panel what a user does, once it shows the folder's content.
    void whenOpen(const std::function<void(QFileDialog &)> &deed)
    {
        QTimer::singleShot(0, this, [this, deed] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            dialog->setDirectory(m_folder.path());
            auto *view = dialog->findChild<QListView *>(QStringLiteral("listView"));
            QTRY_COMPARE(view->model()->rowCount(view->rootIndex()), 2);
            deed(*dialog);
            if (dialog->isVisible())
                dialog->reject();
        });
    }
    static void clickRow(QFileDialog &dialog, const QString &name)
    {
        auto *view = dialog.findChild<QListView *>(QStringLiteral("listView"));
        const QModelIndexList rows = view->model()->match(view->model()->index(0, 0, view->rootIndex()),
                                                          Qt::DisplayRole, name, 1, Qt::MatchExactly);
        QCOMPARE(rows.size(), 1);
        view->scrollTo(rows.constFirst());
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(rows.constFirst()).center());
    }
    static void clickOpen(QFileDialog &dialog)
    {
        QTest::mouseClick(dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open),
                          Qt::LeftButton);
    }
};

void TestFilePanel::initTestCase()
{
    QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("My Folder")));
    QVERIFY(QFile(at("file")).open(QIODevice::WriteOnly));
}

void TestFilePanel::folderOrFileIsTaken()
{
    for (const QString &name : {QStringLiteral("My Folder"), QStringLiteral("file")}) {
        QString title;
        whenOpen([&](QFileDialog &dialog) {
            title = dialog.windowTitle();
            clickRow(dialog, name);
            clickOpen(dialog);
        });
        QCOMPARE(platform::makeFilePanel()->chooseFileOrFolder(QStringLiteral("Link it")),
                 m_folder.filePath(name));
        QCOMPARE(title, QStringLiteral("Link it"));
    }
}

void TestFilePanel::typedFolderWithSlashIsEntered()
{
    QString entered;
    whenOpen([&](QFileDialog &dialog) {
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(at("My Folder/"));
        clickOpen(dialog);
        entered = dialog.directory().path();
    });
    QVERIFY(!platform::makeFilePanel()->chooseFileOrFolder({}));
    QCOMPARE(entered, at("My Folder"));
}

void TestFilePanel::importTakesNoFolder()
{
    whenOpen([](QFileDialog &dialog) {
        clickRow(dialog, QStringLiteral("My Folder"));
        clickOpen(dialog);
    });
    QVERIFY(!platform::makeFilePanel()->chooseFile({}));
}

void TestFilePanel::cancelled()
{
    whenOpen([](QFileDialog &dialog) {
        clickRow(dialog, QStringLiteral("file"));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QVERIFY(!platform::makeFilePanel()->chooseFileOrFolder({}));
}

QTEST_MAIN(TestFilePanel)
#include "tst_filepanel.moc"
