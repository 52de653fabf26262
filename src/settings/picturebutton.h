// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/picturemenu.h"

#include <QToolButton>

/// A borderless button that shows the picture in use and opens a menu of those that there are.
class PictureButton : public QToolButton
{
    Q_OBJECT

public:
    /// `names` and `pictureOf` are asked each time the menu opens.
    PictureButton(const QString &name, int pictureSize, std::function<QStringList()> names,
                  widgets::PictureOf pictureOf, QWidget *parent);

    void setCurrent(const QString &pictureName);

Q_SIGNALS:
    void picked(const QString &pictureName);

private:
    void openMenu();

    int m_pictureSize;
    std::function<QStringList()> m_names;
    widgets::PictureOf m_pictureOf;
    QString m_current;
    QImage m_shown;
};
