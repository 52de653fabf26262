// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>
#include <QUuid>

class Config;
class TemplateButton;
namespace links {
struct LinkTemplate;
}
namespace platform {
class FilePanel;
}

/// The grid of templates for new links. Links go to the tile that was edited when the grid was made, found by
/// its id at each press.
class CollectionView : public QScrollArea
{
    Q_OBJECT

public:
    CollectionView(Config &config, const QUuid &selectedTile, platform::FilePanel &filePanel);

    QSize sizeHint() const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void add(const links::LinkTemplate &source);

    Config &m_config;
    platform::FilePanel &m_filePanel;
    const QUuid m_selectedTile;
    QList<TemplateButton *> m_buttons;
};
