// SPDX-License-Identifier: MIT
#include "themes/imagecatalog.h"

#include "themes/imagecache.h"

#include <QFile>
#include <QHash>
#include <QPainter>

#include <optional>

namespace themes {

namespace {

const QString resourceRoot = QStringLiteral(":/pondwicket/");

/// The names of each built-in theme's icons after the three that every theme has.
struct ThemeIcons
{
    QLatin1String theme;
    const char *names; // apart by blanks
};
constexpr ThemeIcons themeIcons[] = {
    {QLatin1String("1984"), "app finder disk"},
    {QLatin1String("1988"), "app files"},
    {QLatin1String("1995"), "query workspaces edit app document-blue document-red"},
    {QLatin1String("1996"),
     "app app-blue app-green app-orange app-pink bookmark-text document-blue document-green document-orange "
     "document-pink finder finder-blue finder-green finder-orange finder-pink folder-blue folder-green "
     "folder-orange folder-pink"},
    {QLatin1String("2000"),
     "folder-tangerine bookmark-tangerine document-tangerine folder-lime bookmark-lime document-lime"},
    {QLatin1String("2010"),
     "folder-green bookmark-green document-green folder-red bookmark-red document-red folder-orange "
     "bookmark-orange document-orange folder-violet bookmark-violet document-violet"},
    {QLatin1String("2024"),
     "app app-green bookmark-green document-green folder-green app-orange bookmark-orange document-orange "
     "folder-orange app-red bookmark-red document-red folder-red app-violet bookmark-violet document-violet "
     "folder-violet app-yellow bookmark-yellow document-yellow folder-yellow"},
};

QByteArray resource(const QString &path)
{
    QFile file(resourceRoot + path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// How the colour variants of a theme's icons come from their sources.
struct Variants
{
    using Recolouring = QHash<QByteArray, QByteArray>; // "#rrggbb" to "#rrggbb"
    struct Variant
    {
        QString source;
        QString palette;
    };
    QHash<QString, Recolouring> palettes;
    QHash<QString, Variant> variants;
};

Variants readVariants(const QString &theme)
{
    Variants result;
    const QByteArray text = resource(QStringLiteral("themes/%1/variants.txt").arg(theme));
    for (const QByteArray &line : text.split('\n')) {
        const QByteArrayList words = line.simplified().split(' ');
        if (words.size() >= 2 && words.first() == "palette") {
            Variants::Recolouring &recolouring = result.palettes[QString::fromLatin1(words.at(1))];
            for (const QByteArray &pair : words.mid(2))
                recolouring.insert(pair.left(7), pair.mid(8));
        } else if (words.size() == 4 && words.first() == "variant") {
            result.variants.insert(QString::fromLatin1(words.at(1)),
                                   {QString::fromLatin1(words.at(2)), QString::fromLatin1(words.at(3))});
        }
    }
    return result;
}

const Variants &variantsOf(const QString &theme)
{
    static QHash<QString, Variants> known;
    auto found = known.constFind(theme);
    if (found == known.constEnd())
        found = known.insert(theme, readVariants(theme));
    return *found;
}

/// All colours replaced in one pass, so that a palette may also exchange two of them.
QByteArray recoloured(const QByteArray &svg, const Variants::Recolouring &recolouring)
{
    constexpr qsizetype length = 7; // "#rrggbb"
    QByteArray result = svg;
    for (qsizetype at = svg.indexOf('#'); at >= 0; at = svg.indexOf('#', at + 1)) {
        const auto found = recolouring.constFind(svg.mid(at, length));
        if (found != recolouring.constEnd())
            result.replace(at, length, *found);
    }
    return result;
}

QByteArray iconSource(const QString &theme, const QString &icon)
{
    const QString path = QStringLiteral("themes/%1/icons/%2.svg");
    const Variants &variants = variantsOf(theme);
    const auto found = variants.variants.constFind(icon);
    if (found == variants.variants.constEnd())
        return resource(path.arg(theme, icon));
    return recoloured(resource(path.arg(theme, found->source)), variants.palettes.value(found->palette));
}

/// The number of a day, placed so that it stands on the page of every theme's calendar glyph.
QImage dayImage(const QString &digits, int density)
{
    constexpr QSize canvas(32, 32);
    constexpr QPoint middle(16, 19);
    constexpr QSize digit(7, 12);
    constexpr int gap = 1;
    QImage image(canvas * density, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(density);
    QPainter painter(&image);
    const qreal width = digits.size() * digit.width() + (digits.size() - 1) * gap;
    qreal x = middle.x() - width / 2;
    for (const QChar number : digits) {
        const QImage numeral =
            svgImage(resource(QStringLiteral("calendar/%1.svg").arg(number)), density, digit);
        painter.drawImage(QPointF(x, middle.y() - digit.height() / 2), numeral);
        x += digit.width() + gap;
    }
    return image;
}

bool isDay(const QString &text)
{
    const int day = text.toInt();
    return day >= 1 && day <= 31 && text == QString::number(day);
}

/// The part of a name after "<prefix>-"; nothing when it begins otherwise.
std::optional<QString> after(const QString &prefix, const QString &name)
{
    if (!name.startsWith(prefix) || name.mid(prefix.size(), 1) != QLatin1String("-"))
        return std::nullopt;
    return name.mid(prefix.size() + 1);
}

QStringList appIconNames()
{
    return {QStringLiteral("Default"), QStringLiteral("1979"), QStringLiteral("1988"), QStringLiteral("1995"),
            QStringLiteral("2000")};
}

} // namespace

const QStringList &chromeElementNames()
{
    static const QStringList names = {
        QStringLiteral("tab-leading"),
        QStringLiteral("tab-trailing"),
        QStringLiteral("tile"),
        QStringLiteral("tab-leading-vertical"),
        QStringLiteral("tab-trailing-vertical"),
        QStringLiteral("tile-vertical"),
        QStringLiteral("close"),
        QStringLiteral("minimize"),
        QStringLiteral("home"),
        QStringLiteral("calendar"),
        QStringLiteral("default"),
    };
    return names;
}

QStringList builtInIconNames(const QString &theme)
{
    QStringList names = {QStringLiteral("bookmark"), QStringLiteral("document"), QStringLiteral("folder")};
    for (const ThemeIcons &icons : themeIcons) {
        if (icons.theme == theme)
            names += QString::fromLatin1(icons.names).split(QLatin1Char(' '));
    }
    return names;
}

QStringList builtInImageNames()
{
    QStringList names;
    for (const ThemeIcons &icons : themeIcons) {
        for (const QString &name : chromeElementNames() + builtInIconNames(icons.theme))
            names += icons.theme + QLatin1Char('-') + name;
    }
    for (const QString &name : appIconNames())
        names += name + QStringLiteral("-preview");
    for (int day = 1; day <= 31; ++day)
        names += QStringLiteral("calendar-%1").arg(day);
    names += QStringLiteral("harrowline");
    return names;
}

QImage drawBuiltInImage(const QString &name, int density)
{
    if (name == QLatin1String("harrowline"))
        return svgImage(resource(QStringLiteral("images/harrowline.svg")), density);
    if (const auto day = after(QStringLiteral("calendar"), name))
        return isDay(*day) ? dayImage(*day, density) : QImage();
    if (name.endsWith(QLatin1String("-preview"))) {
        const QString icon = name.chopped(8);
        return appIconNames().contains(icon)
            ? svgImage(resource(QStringLiteral("appicons/%1.png").arg(icon)), density, QSize(64, 64))
            : QImage();
    }
    for (const ThemeIcons &icons : themeIcons) {
        const auto part = after(icons.theme, name);
        if (part && chromeElementNames().contains(*part))
            return svgImage(resource(QStringLiteral("themes/%1/chrome/%2.svg").arg(icons.theme, *part)),
                            density);
        if (part && builtInIconNames(icons.theme).contains(*part))
            return svgImage(iconSource(icons.theme, *part), density);
    }
    return QImage();
}

QImage builtInImage(const QString &name, qreal scale)
{
    const int density = densityFor(scale);
    return cachedImage(QStringLiteral("image ") + name, platform::FileStamp::ofProgram(), density,
                       [&name, density] { return drawBuiltInImage(name, density); });
}

} // namespace themes
