// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>
#include <QWidget>

class Config;
class QPlainTextEdit;

/// A tile's notes: a pad whose text lies in a file of the tile's folder and is written there on every change.
class ScratchpadView : public QWidget
{
    Q_OBJECT

public:
    ScratchpadView(Config &config, const QUuid &tileId, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString notesPath() const;
    void load();
    void takeEdit();
    void save();

    Config &m_config;
    QUuid m_tileId;
    QPlainTextEdit *m_editor;
    QString m_text; ///< the notes as they are or will be in the file
    bool m_isOther = false; ///< what stands in the file could not be read
    QString m_mark; ///< the byte-order mark of a file that began with one
    QString m_lineEnd = QStringLiteral("\n"); ///< the file's own
};
