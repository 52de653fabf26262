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
    void initTestCase()
    {
        QVERIFY(QDir(m_folder.path()).mkpath(u"My Folder"_qs));
        QVERIFY(QFile(m_folder.filePath(u"file"_qs)).open(QIODevice::WriteOnly));
    }

    void takesWhatWasAskedFor()
    {
        using Row = std::tuple<QString, bool, bool, bool>;
        for (const auto &[clicked, takesFolders, isTaken, isCancelled] :
             {Row(u"My Folder"_qs, true, true, false), Row(u"file"_qs, true, true, false),
              Row(u"file"_qs, true, false, true), Row(u"file"_qs, false, true, false),
              Row(u"My Folder"_qs, false, false, false)}) {
            QString title;
            whenOpen([&, name = clicked, cancels = isCancelled](QFileDialog &dialog) {
                title = dialog.windowTitle();
                auto *view = dialog.findChild<QListView *>(u"listView"_qs);
                const QModelIndexList found =
                    view->model()->match(view->model()->index(0, 0, view->rootIndex()), Qt::DisplayRole, name,
                                         1, Qt::MatchExactly);
                QCOMPARE(found.size(), 1);
                view->scrollTo(found.first());
                QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                                  view->visualRect(found.first()).center());
                if (cancels)
                    QTest::keyClick(&dialog, Qt::Key_Escape);
                else
                    clickOpen(dialog);
            });
            const auto panel = platform::makeFilePanel();
            const auto chosen =
                takesFolders ? panel->chooseFileOrFolder(u"Link it"_qs) : panel->chooseFile(u"Link it"_qs);
            QVERIFY2(chosen.value_or(QString()) == (isTaken ? m_folder.filePath(clicked) : QString()),
                     qPrintable(clicked));
            QCOMPARE(title, u"Link it"_qs);
        }
    }

    void typedFolderWithSlashIsEntered()
    {
        QString entered;
        whenOpen([&](QFileDialog &dialog) {
            dialog.findChild<QLineEdit *>(u"fileNameEdit"_qs)->setText(m_folder.filePath(u"My Folder/"_qs));
            clickOpen(dialog);
            entered = dialog.directory().path();
        });
        QVERIFY(!platform::makeFilePanel()->chooseFileOrFolder({}));
        QCOMPARE(entered, m_folder.filePath(u"My Folder"_qs));
    }

private:
    /// Does in the open panel what a user does, once it shows the folder's content.
    void whenOpen(const std::function<void(QFileDialog &)> &deed)
    {
        QTimer::singleShot(0, this, [this, deed] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            dialog->setDirectory(m_folder.path());
            auto *view = dialog->findChild<QListView *>(u"listView"_qs);
            QTRY_COMPARE(view->model()->rowCount(view->rootIndex()), 2);
            deed(*dialog);
            if (dialog->isVisible())
                dialog->reject();
        });
    }
    static void clickOpen(QFileDialog &dialog)
    {
        QTest::mouseClick(dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open),
                          Qt::LeftButton);
    }

    QTemporaryDir m_folder;
};

QTEST_MAIN(TestFilePanel)
#include "tst_filepanel.moc"
