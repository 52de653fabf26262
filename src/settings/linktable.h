// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QTableView>

class LinkTableModel;
class QLineEdit;

/// The table of the edited tile's links. A click into a text edits it at once, at the place of the click. The
/// Tab key walks the cells of a row and then leaves the table; the arrow keys change rows.
class LinkTable : public QTableView
{
    Q_OBJECT

public:
    explicit LinkTable(LinkTableModel &links, QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void removeRequested(const QUuid &link);

protected:
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void enter(const QModelIndex &cell);
    bool step(bool forward);
    void requestRemoval(const QModelIndex &cell);
    void fitRows();
    int heightOfRows(int count) const;

    LinkTableModel &m_links;
    QWidget *m_corners;
    QPointer<QLineEdit> m_pressedField; ///< opened by the press that is held
    int m_pressedPosition = 0; ///< in its text
};
