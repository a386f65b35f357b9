// kelpie_artwork: draws the shell's and the wizard's pictures as PNG files and writes the
// two .qrc files that list them.
//
//   kelpie_artwork <repository root> [--sheet <file.png>]
//
// The output depends only on this code and the fonts at hand, so two runs on one machine
// write the same bytes.
#include "art.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMap>
#include <QSaveFile>
#include <QTextStream>
#include <cstdio>

using art::Picture;

static bool writeFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    f.write(bytes);
    return f.commit();
}

static QByteArray pngBytes(const QImage &img)
{
    QByteArray bytes;
    QBuffer buf(&bytes);
    buf.open(QIODevice::WriteOnly);
    img.convertToFormat(QImage::Format_ARGB32).save(&buf, "PNG");
    return bytes;
}

static QByteArray qrcText(const QString &prefix, const QStringList &names)
{
    QByteArray out;
    QTextStream s(&out);
    s << "<!DOCTYPE RCC><RCC version=\"1.0\">\n<qresource prefix=\"" << prefix << "\">\n";
    for (const QString &n : names)
        s << "    <file>" << n << "</file>\n";
    s << "</qresource>\n</RCC>\n";
    s.flush();
    return out;
}

// A preview of every picture on a checkerboard, small ones enlarged, for looking at by eye.
static QImage contactSheet(const QVector<Picture> &all, const QVector<QImage> &images)
{
    const int cellW = 220, cellH = 190, cols = 6;
    const int rows = (all.size() + cols - 1) / cols;
    QImage sheet = art::canvas(cols * cellW, rows * cellH);
    sheet.fill(QColor(0x30, 0x30, 0x30));
    QPainter p(&sheet);
    for (int i = 0; i < all.size(); ++i) {
        const QImage &img = images[i];
        const QRect cell((i % cols) * cellW, (i / cols) * cellH, cellW, cellH);
        const int room = 160;
        int f = qMax(1, qMin(room / qMax(1, img.width()), room / qMax(1, img.height())));
        f = qMin(f, 4);
        QSize sz = img.size() * f;
        if (sz.width() > cellW - 10 || sz.height() > room)
            sz = img.size().scaled(cellW - 10, room, Qt::KeepAspectRatio);
        const QRect target(cell.x() + (cellW - sz.width()) / 2, cell.y() + 6, sz.width(), sz.height());
        for (int y = target.top(); y <= target.bottom(); y += 8)
            for (int x = target.left(); x <= target.right(); x += 8)
                p.fillRect(QRect(x, y, 8, 8).intersected(target),
                           ((x - target.left()) / 8 + (y - target.top()) / 8) % 2 ? QColor(0x9a, 0x9a, 0x9a)
                                                                                 : QColor(0xd0, 0xd0, 0xd0));
        p.drawImage(target, img);
        p.setPen(Qt::white);
        p.drawText(QRect(cell.x(), cell.bottom() - 22, cellW, 20), Qt::AlignCenter,
                   QStringLiteral("%1 %2x%3").arg(all[i].name, QString::number(img.width()),
                                                        QString::number(img.height())));
    }
    return sheet;
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    const QStringList args = app.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: kelpie_artwork <repository root> [--sheet <file.png>]\n");
        return 2;
    }
    const QDir root(args.at(1));
    if (!root.exists(QStringLiteral("my_shell1")) || !root.exists(QStringLiteral("images"))) {
        std::fprintf(stderr, "%s is not the repository root (no my_shell1/ and images/)\n",
                     qPrintable(args.at(1)));
        return 2;
    }
    QString sheetPath;
    const int sheetAt = args.indexOf(QStringLiteral("--sheet"));
    if (sheetAt > 0 && sheetAt + 1 < args.size())
        sheetPath = args.at(sheetAt + 1);

    QVector<Picture> all = art::shellPictures();
    all += art::iconPictures();
    all += art::wizardPictures();

    QVector<QImage> images;
    QMap<QString, QStringList> listed;  // folder -> names for its .qrc
    int failures = 0;
    for (const Picture &pic : all) {
        const QImage img = pic.draw();
        images.append(img);
        root.mkpath(pic.folder);
        const QString path = root.filePath(pic.folder + QLatin1Char('/') + pic.name);
        if (!writeFile(path, pngBytes(img))) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
            ++failures;
        }
        if (pic.inResources)
            listed[pic.folder].append(pic.name);
    }

    const QString shellFolder = QStringLiteral("my_shell1/Resources");
    const QString wizardFolder = QStringLiteral("images");
    if (!writeFile(root.filePath(shellFolder + QStringLiteral("/my_shell1.qrc")),
                   qrcText(QStringLiteral("/my_shell1/Resources"), listed.value(shellFolder)))
        || !writeFile(root.filePath(wizardFolder + QStringLiteral("/images.qrc")),
                      qrcText(QStringLiteral("/images"), listed.value(wizardFolder)))) {
        std::fprintf(stderr, "cannot write the .qrc files\n");
        ++failures;
    }

    if (!sheetPath.isEmpty() && !writeFile(sheetPath, pngBytes(contactSheet(all, images)))) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(sheetPath));
        ++failures;
    }
    std::printf("%d pictures written\n", int(all.size()) - failures);
    return failures ? 1 : 0;
}
