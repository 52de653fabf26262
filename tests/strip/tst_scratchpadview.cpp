// SPDX-License-Identifier: MIT
#include "strip/scratchpadview.h"
#include "support/stdoutcapture.h"
#include "support/stripworld.h"

#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QTest>

using namespace support;

class TestScratchpadView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_world.emplace();
        m_tile = m_world->addTile(QStringLiteral("a"), {});
        QDir(m_world->folder.path()).mkdir(QStringLiteral("tile-a"));
        m_path = m_world->folder.filePath(QStringLiteral("tile-a/Notes.txt"));
    }

    void cleanup()
    {
        m_pad.reset();
        m_world.reset();
    }

    void firstShowingMakesTheFile()
    {
        QCOMPARE(show()->toPlainText(), QString());
        QCOMPARE(notes(), QByteArray("Notes"));
        QCOMPARE(show()->toPlainText(), QStringLiteral("Notes"));
    }

    void keepsWhatItLoads_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("afterTyping"); // an "x" at the end
        QTest::newRow("plain") << QByteArray("a\nb\n") << QByteArray("a\nb\nx");
        QTest::newRow("carriage returns") << QByteArray("a\r\nb\r\n") << QByteArray("a\r\nb\r\nx");
        QTest::newRow("no-break space") << QByteArray("10\xC2\xA0km") << QByteArray("10\xC2\xA0kmx");
        for (const QByteArray mark : {"\xEF\xBB\xBF", "\xEF\xBB\xBF\xEF\xBB\xBF"}) // the second was lost
            QTest::addRow("%d byte-order marks", int(mark.size() / 3)) << mark + 'a' << mark + "ax";
    }

    /// The toolkit's own way to plain text turns no-break spaces into blanks and every line end into one
    /// kind: notes of another program came back changed after they were only looked at.
    void keepsWhatItLoads()
    {
        QFETCH(QByteArray, bytes);
        writeNotes(bytes);
        QPlainTextEdit *editor = show();
        QCOMPARE(notes(), bytes);
        editor->moveCursor(QTextCursor::End);
        QTest::keyClicks(editor, QStringLiteral("x"));
        QTEST(notes(), "afterTyping");
    }

    void everyChangeIsWritten()
    {
        writeNotes("ab");
        QPlainTextEdit *editor = show();
        editor->moveCursor(QTextCursor::End);
        QTest::keyClick(editor, Qt::Key_Backspace);
        QCOMPARE(notes(), QByteArray("a"));
        editor->selectAll();
        QTest::keyClick(editor, Qt::Key_Delete);
        QCOMPARE(notes(), QByteArray());
        QCOMPARE(m_world->config.tile(m_tile.id)->scratchpadText, QString()); // never into the settings
    }

    void unreadableNotesAreReportedAndKept()
    {
        writeNotes("\xFF\xFE");
        StdoutCapture output;
        QCOMPARE(show()->toPlainText(), QString());
        QCOMPARE(output.lines().size(), 1);
        QCOMPARE(notes(), QByteArray("\xFF\xFE"));
    }

    void missingFolderIsReported()
    {
        QDir(m_world->folder.filePath(QStringLiteral("tile-a"))).removeRecursively();
        StdoutCapture output;
        QPlainTextEdit *editor = show();
        QCOMPARE(output.lines().size(), 1);
        QTest::keyClicks(editor, QStringLiteral("hi"));
        QCOMPARE(output.lines().size(), 2);
        QCOMPARE(editor->toPlainText(), QStringLiteral("hi"));
    }

private:
    QPlainTextEdit *show()
    {
        m_pad = std::make_unique<ScratchpadView>(m_world->config, m_tile.id, nullptr);
        m_pad->show();
        return m_pad->findChild<QPlainTextEdit *>();
    }

    QByteArray notes() const
    {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    void writeNotes(const QByteArray &bytes) const
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    std::optional<StripWorld> m_world;
    TileItem m_tile;
    QString m_path;
    std::unique_ptr<ScratchpadView> m_pad;
};

QTEST_MAIN(TestScratchpadView)
#include "tst_scratchpadview.moc"
