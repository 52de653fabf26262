// SPDX-License-Identifier: MIT
// Draws an SVG picture at the sizes of an icon theme: icons PICTURE.svg FOLDER SUBFOLDER/NAME SIZE...
// writes FOLDER/<size>x<size>/SUBFOLDER/NAME.png for each size.
#include <QCoreApplication>
#include <QDir>
#include <QImageReader>

#include <algorithm>

namespace {

bool draw(const QString &picture, int size, const QString &path)
{
    QImageReader reader(picture, "svg");
    reader.setScaledSize({size, size});
    const QImage image = reader.read();
    return !image.isNull() && QDir().mkpath(QFileInfo(path).path()) && image.save(path, "png");
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 5)
        return 2;
    const QStringList sizes = arguments.sliced(4);
    return std::all_of(sizes.begin(), sizes.end(),
                       [&arguments](const QString &size) {
                           const QString path =
                               QStringLiteral("%1/%2x%2/%3.png").arg(arguments.at(2), size, arguments.at(3));
                           return draw(arguments.at(1), size.toInt(), path);
                       })
        ? 0
        : 1;
}
