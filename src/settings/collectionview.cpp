// SPDX-License-Identifier: MIT
#include "settings/collectionview.h"

#include "links/linktemplates.h"
#include "links/tilealias.h"
#include "model/config.h"
#include "platform/localized.h"
#include "settings/templatebutton.h"

#include <QGridLayout>
#include <QKeyEvent>

namespace {

constexpr int columns = 5;
constexpr int columnSpacing = 8; // points
constexpr int rowSpacing = 16;

} // namespace

CollectionView::CollectionView(Config &config, const QUuid &selectedTile, platform::FilePanel &filePanel)
    : m_config(config)
    , m_filePanel(filePanel)
    , m_selectedTile(selectedTile)
{
    setObjectName(QStringLiteral("CollectionView"));
    setAccessibleName(platform::localized("Add item"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    viewport()->setAutoFillBackground(false);
    auto *content = new QWidget(this);
    content->setAutoFillBackground(false);
    auto *grid = new QGridLayout(content);
    grid->setContentsMargins(0, 0, 0, 0); // the popover pads it
    grid->setHorizontalSpacing(columnSpacing);
    grid->setVerticalSpacing(rowSpacing);
    for (const links::LinkTemplate &source : links::linkTemplates) {
        auto *button = new TemplateButton(source, content);
        button->installEventFilter(this);
        connect(button, &QAbstractButton::clicked, this, [this, &source] { add(source); });
        grid->addWidget(button, int(m_buttons.size()) / columns, int(m_buttons.size()) % columns);
        m_buttons.append(button);
    }
    setWidget(content);
    setFocusProxy(m_buttons.first());
}

QSize CollectionView::sizeHint() const
{
    return widget()->sizeHint();
}

void CollectionView::add(const links::LinkTemplate &source)
{
    if (source.key)
        links::addTemplateLink(m_config, m_selectedTile, QLatin1String(source.key));
    else
        links::linkApplicationOrFile(m_config, QUuid(m_selectedTile), m_filePanel); // may outlive this view
}

/// The arrow keys of the buttons walk the grid.
bool CollectionView::eventFilter(QObject *watched, QEvent *event)
{
    const qsizetype index = m_buttons.indexOf(qobject_cast<TemplateButton *>(watched));
    if (event->type() != QEvent::KeyPress || index < 0)
        return QScrollArea::eventFilter(watched, event);
    const int forward = layoutDirection() == Qt::RightToLeft ? -1 : 1;
    int step = 0;
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Left:
        step = -forward;
        break;
    case Qt::Key_Right:
        step = forward;
        break;
    case Qt::Key_Up:
        step = -columns;
        break;
    case Qt::Key_Down:
        step = columns;
        break;
    default:
        return QScrollArea::eventFilter(watched, event);
    }
    window()->setAttribute(Qt::WA_KeyboardFocusChange);
    if (index + step >= 0 && index + step < m_buttons.size())
        m_buttons.at(index + step)->setFocus(Qt::OtherFocusReason);
    return true;
}
