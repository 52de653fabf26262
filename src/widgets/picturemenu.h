// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QStringList>
#include <QWidget>

#include <functional>

class QListView;

namespace widgets {

/// The picture of a name, at its natural size.
using PictureOf = std::function<QImage(const QString &name)>;

/// A menu that is a grid of pictures; their names are tooltips. A picture is asked for when it is first seen.
/// Deletes itself once it is closed.
class PictureMenu : public QWidget
{
    Q_OBJECT

public:
    PictureMenu(const QStringList &names, const PictureOf &pictureOf, int pictureSize, QWidget *anchor);

    /// Opens below the anchor, or above it where there is no room, with `current` marked.
    void popup(const QString &current);

Q_SIGNALS:
    void picked(const QString &name);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void pick(const QModelIndex &index);
    QSize wantedSize(const QSize &room) const;

    QListView *m_list;
};

} // namespace widgets
