// SPDX-License-Identifier: MIT
#include "settings/settingsview.h"

#include "model/config.h"
#include "platform/localized.h"
#include "settings/generalsettingsview.h"
#include "settings/settingsmetrics.h"
#include "settings/symbolbutton.h"
#include "settings/tilesettingsview.h"

#include <QIcon>
#include <QKeyEvent>
#include <QShortcut>
#include <QTabBar>

using platform::localized;

SettingsView::SettingsView(Config &config, platform::FilePanel &filePanel)
    : m_config(config)
    , m_filePanel(filePanel)
{
    setObjectName(QStringLiteral("SettingsView"));
    setWindowTitle(QLatin1String("pondWicket ") + localized("Settings"));
    // A dialog to window managers: they give it no place among tiles and no button to enlarge it.
    setWindowFlag(Qt::Dialog);
    setFixedSize(settings::windowWidth, settings::windowHeight);
    setDocumentMode(true);
    setElideMode(Qt::ElideRight);
    setUsesScrollButtons(false);
    setIconSize({settings::symbolSize, settings::symbolSize});
    tabBar()->setExpanding(false);
    addTab(new GeneralSettingsView(config, this), localized("General Settings"));
    connect(new QShortcut(QKeySequence(QStringLiteral("Ctrl+W")), this), &QShortcut::activated, this,
            &QWidget::close);
    connect(&config, &Config::redrawNeeded, this, &SettingsView::syncTabs);
    syncTabs();
}

void SettingsView::syncTabs()
{
    const bool wanted = !m_config.tileItems().isEmpty();
    if (wanted && !m_tileSettings) {
        m_tileSettings = new TileSettingsView(m_config, m_filePanel, this);
        addTab(m_tileSettings, localized("Tile Settings"));
    } else if (!wanted && m_tileSettings) {
        removeTab(indexOf(m_tileSettings));
        m_tileSettings->deleteLater(); // a panel that one of its buttons opened may be running
        m_tileSettings = nullptr;
    }
    setTabSymbols();
}

void SettingsView::setTabSymbols()
{
    setTabIcon(0, symbolIcon(QStringLiteral("gearshape.2.fill"), *this));
    if (m_tileSettings)
        setTabIcon(indexOf(m_tileSettings), symbolIcon(QStringLiteral("square.on.square"), *this));
}

void SettingsView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        setTabSymbols();
    QTabWidget::changeEvent(event);
}

void SettingsView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QTabWidget::keyPressEvent(event);
}
