// SPDX-License-Identifier: MIT
#include "settings/generalsettingsview.h"

#include "model/config.h"
#include "model/settingsstore.h"
#include "platform/localized.h"
#include "settings/picturebutton.h"
#include "settings/settingsmetrics.h"
#include "settings/symbolbutton.h"
#include "themes/iconstore.h"
#include "themes/imagecatalog.h"
#include "themes/themestore.h"
#include "widgets/metrics.h"
#include "widgets/plaintext.h"
#include "widgets/popuppicker.h"
#include "widgets/segmentedpicker.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QPixmap>

using platform::localized;

namespace {

/// The words of the picker's two segments.
const QStringList &directions()
{
    static const QStringList words = {QStringLiteral("ltr"), QStringLiteral("ttb")};
    return words;
}

QImage appIconPreview(const QString &name)
{
    return themes::builtInImage(name + QStringLiteral("-preview"));
}

} // namespace

GeneralSettingsView::GeneralSettingsView(Config &config, QWidget *parent)
    : SettingsPage(parent)
    , m_config(config)
{
    setObjectName(QStringLiteral("GeneralSettingsView"));
    QString mnemonics;

    auto *form = new QFormLayout;
    form->setFormAlignment(Qt::AlignHCenter | Qt::AlignTop);
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    form->setHorizontalSpacing(widgets::stackSpacing);
    form->setVerticalSpacing(settings::sectionSpacing);
    column()->addLayout(form);

    m_showsDate = new QCheckBox(widgets::withMnemonic(localized("Show calendar"), mnemonics), this);
    m_showsDate->setObjectName(QStringLiteral("Show calendar"));
    connect(m_showsDate, &QAbstractButton::clicked, this, [this](bool on) { m_config.setShowsDate(on); });
    form->addRow(nullptr, m_showsDate);

    const QString position = localized("Position");
    m_direction = new widgets::SegmentedPicker(this);
    m_direction->setObjectName(QStringLiteral("Position"));
    m_direction->setAccessibleName(position);
    m_direction->setOptions({localized("Horizontal"), localized("Vertical")});
    connect(m_direction, &widgets::SegmentedPicker::activated, this,
            [this](int index) { m_config.setDirection(directions().value(index)); });
    form->addRow(widgets::withMnemonic(position, mnemonics), m_direction);

    const QString theme = localized("Theme");
    QWidget *themeRow = makeThemeRow(theme);
    form->addRow(widgets::withMnemonic(theme, mnemonics), themeRow);
    qobject_cast<QLabel *>(form->labelForField(themeRow))->setBuddy(m_theme);
    form->addRow(nullptr, makeAppIconMenu());

    column()->addStretch();
    column()->addWidget(makeCredit());

    connect(&config, &Config::showsDateChanged, this, &GeneralSettingsView::save);
    connect(&config, &Config::directionChanged, this, &GeneralSettingsView::save);
    connect(&config, &Config::currentThemeChanged, this, &GeneralSettingsView::save);
    connect(&config, &Config::redrawNeeded, this, &GeneralSettingsView::refresh);
    refresh();
}

QWidget *GeneralSettingsView::makeThemeRow(const QString &label)
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    m_theme = new widgets::PopupPicker(row);
    m_theme->setObjectName(QStringLiteral("Theme"));
    m_theme->setAccessibleName(label);
    connect(m_theme, &QComboBox::activated, this,
            [this](int index) { m_config.setCurrentTheme(m_theme->itemText(index)); });
    layout->addWidget(m_theme);

    auto *reloadButton =
        new SymbolButton(QStringLiteral("arrow.clockwise"), localized("Reinstall missing themes"), row);
    reloadButton->setObjectName(QStringLiteral("Reload"));
    connect(reloadButton, &QAbstractButton::clicked, this, &GeneralSettingsView::reload);
    layout->addWidget(reloadButton);
    return row;
}

QWidget *GeneralSettingsView::makeAppIconMenu()
{
    m_appIcon = new PictureButton(
        localized("Application icon"), settings::appIconSize, [this] { return m_config.availableIcons(); },
        appIconPreview, this);
    m_appIcon->setObjectName(QStringLiteral("Application icon"));
    connect(m_appIcon, &PictureButton::picked, this, &GeneralSettingsView::chooseAppIcon);
    return m_appIcon;
}

QWidget *GeneralSettingsView::makeCredit()
{
    auto *credit = new QWidget(this);
    auto *layout = new QVBoxLayout(credit);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *logo = new QLabel(credit);
    logo->setPixmap(QPixmap::fromImage(themes::builtInImage(QStringLiteral("harrowline"))));
    logo->setAlignment(Qt::AlignCenter);
    layout->addWidget(logo);
    auto *text = new QLabel(localized("Made by Harrowline"), credit);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    text->setForegroundRole(QPalette::PlaceholderText);
    QFont font = text->font();
    font.setPixelSize(widgets::captionFontSize);
    text->setFont(font);
    layout->addWidget(text);
    return credit;
}

void GeneralSettingsView::refresh()
{
    m_showsDate->setChecked(m_config.showsDate());
    m_direction->setCurrentIndex(int(directions().indexOf(m_config.direction())));
    m_theme->setOptions(m_config.availableThemes());
    m_theme->setCurrentIndex(int(m_config.availableThemes().indexOf(m_config.currentTheme())));
    m_appIcon->setCurrent(m_config.appIcon());
}

void GeneralSettingsView::save()
{
    model::saveSettings(m_config);
}

void GeneralSettingsView::reload()
{
    themes::installBuiltInThemes(m_config);
    // The present state, not that of a first run: file and memory must not part.
    model::saveSettings(m_config);
    Q_EMIT m_config.redrawNeeded(); // the pictures on disk may be others now
}

void GeneralSettingsView::chooseAppIcon(const QString &name)
{
    m_config.setAppIcon(name);
    themes::applyAppIcon(m_config);
    model::saveSettings(m_config);
}
