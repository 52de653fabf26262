// SPDX-License-Identifier: MIT
#include "strip/scratchpadview.h"
#include "support/files.h"
#include "support/stdoutcapture.h"
#include "support/stripworld.h"

#include <QPlainTextEdit>
#include <QTest>

class TestScratchpadView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_pad.reset();
        m_world.emplace();
        m_tile = m_world->addTile(u"a"_qs, {});
        support::make(m_world->folder.filePath(u"tile-a/"_qs));
    }

    void firstShowingMakesTheFile()
    {
        QCOMPARE(show()->toPlainText(), QString());
        QCOMPARE(notes(), "Notes");
        QCOMPARE(show()->toPlainText(), u"Notes"_qs);
    }

    /// The toolkit's own way to plain text turns no-break spaces into blanks and every line end into one
    /// kind: notes of another program came back changed after they were only looked at, and without the
    /// second of two byte-order marks.
    void keepsWhatItLoads()
    {
        for (const QByteArray &bytes : QByteArrayList{"1\u00A0m\n", "a\r\nb", "\uFEFFa", "\uFEFF\uFEFFa"}) {
            support::make(path(), bytes);
            QPlainTextEdit *editor = show();
            QCOMPARE(notes(), bytes);
            editor->moveCursor(QTextCursor::End);
            QTest::keyClicks(editor, u"x"_qs);
            QCOMPARE(notes(), bytes + 'x');
            QTest::keyClick(editor, Qt::Key_Backspace);
            QCOMPARE(notes(), bytes);
            QCOMPARE(m_world->config.tile(m_tile.id)->scratchpadText, QString()); // never into the settings
        }
    }

    void failuresAreReported()
    {
        support::make(path(), "\xFF\xFE");
        StdoutCapture output;
        QCOMPARE(show()->toPlainText(), QString());
        QCOMPARE(output.lines().size(), 1);
        QCOMPARE(notes(), "\xFF\xFE");
        QTest::keyClicks(show(), u"a"_qs); // replaced what nobody had seen
        QCOMPARE(notes(), "a");
        QCOMPARE(support::bytesOf(path() + u'~'), "\xFF\xFE");
        support::make(path(), "\xFF");
        QPlainTextEdit *other = show();
        QVERIFY(QFile::remove(path()));
        QTest::keyClicks(other, u"b"_qs); // nothing left to keep
        QCOMPARE(notes(), "b");
        QVERIFY(QDir(m_world->folder.filePath(u"tile-a"_qs)).removeRecursively());
        QPlainTextEdit *editor = show();
        QTest::keyClicks(editor, u"hi"_qs);
        QCOMPARE(output.lines().size(), 5); // the showings and each letter
        QCOMPARE(editor->toPlainText(), u"hi"_qs);
    }

private:
    QPlainTextEdit *show()
    {
        m_pad = std::make_unique<ScratchpadView>(m_world->config, m_tile.id, nullptr);
        m_pad->show();
        return m_pad->findChild<QPlainTextEdit *>();
    }

    QString path() const { return m_world->folder.filePath(u"tile-a/Notes.txt"_qs); }
    QByteArray notes() const { return support::bytesOf(path()); }

    std::optional<support::StripWorld> m_world;
    TileItem m_tile;
    std::unique_ptr<ScratchpadView> m_pad;
};

QTEST_MAIN(TestScratchpadView)
#include "tst_scratchpadview.moc"
