// SPDX-License-Identifier: MIT
#include "settings/picturebutton.h"

#include <QPixmap>

PictureButton::PictureButton(const QString &name, int pictureSize, std::function<QStringList()> names,
                             widgets::PictureOf pictureOf, QWidget *parent)
    : QToolButton(parent)
    , m_pictureSize(pictureSize)
    , m_names(std::move(names))
    , m_pictureOf(std::move(pictureOf))
{
    setAutoRaise(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(name);
    setToolTip(name);
    setIconSize({pictureSize, pictureSize});
    connect(this, &QAbstractButton::clicked, this, &PictureButton::openMenu);
}

void PictureButton::setCurrent(const QString &pictureName)
{
    m_current = pictureName;
    setAccessibleDescription(pictureName);
    const QImage picture = m_pictureOf(pictureName);
    if (picture == m_shown)
        return;
    m_shown = picture;
    setIcon(QPixmap::fromImage(picture));
}

void PictureButton::openMenu()
{
    const QStringList names = m_names();
    if (names.isEmpty())
        return;
    auto *menu = new widgets::PictureMenu(names, m_pictureOf, m_pictureSize, this);
    connect(menu, &widgets::PictureMenu::picked, this, &PictureButton::picked);
    menu->popup(m_current);
}
