// SPDX-License-Identifier: MIT
// The least that a strip could be: a borderless window of its size above the others, with 22 pictures in it.
//   floor FOLDER: shows the pictures of the folder, at most 22, in the order of their names.
#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

namespace {

constexpr int pictures = 22;
constexpr int side = 44; // points
constexpr int length = 1024;

class Picture : public QWidget
{
public:
    Picture(const QString &file, QWidget *parent)
        : QWidget(parent)
        , m_pixmap(file)
    {
        resize(side, side);
    }

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).drawPixmap(0, 0, m_pixmap); }

private:
    QPixmap m_pixmap;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QDir folder(application.arguments().value(1));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name).mid(0, pictures);
    QWidget window(nullptr, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    int at = 0;
    for (const QString &name : names) {
        (new Picture(folder.filePath(name), &window))->move(at, 0);
        at += side;
    }
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    window.setGeometry(screen.left(), screen.bottom() + 1 - side, length, side);
    window.show();
    return QApplication::exec();
}
