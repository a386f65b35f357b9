// Shared palette and drawing helpers of the artwork generator.
#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QString>
#include <QVector>

namespace art {

// The family of the menu style sheet (#134c78 ground, #F4DB8F highlight, #083894 ink)
// and of the desktop (#1273aa).
namespace pal {
const QColor navyDeep(0x07, 0x1f, 0x36);
const QColor navyDark(0x0b, 0x32, 0x56);
const QColor navy(0x13, 0x4c, 0x78);
const QColor blue(0x1a, 0x62, 0xa0);
const QColor desk(0x12, 0x73, 0xaa);
const QColor sky(0x3d, 0x9b, 0xe0);
const QColor ice(0xcf, 0xe6, 0xf7);
const QColor gold(0xF4, 0xDB, 0x8F);
const QColor goldDeep(0xd4, 0xa0, 0x32);
const QColor ink(0x08, 0x38, 0x94);
const QColor red(0xd8, 0x3c, 0x2e);
const QColor redDark(0x8a, 0x1a, 0x12);
const QColor green(0x3c, 0xb0, 0x4e);
const QColor greenDark(0x1c, 0x66, 0x28);
const QColor grey(0xb8, 0xc4, 0xcf);
const QColor greyDark(0x4a, 0x58, 0x66);
} // namespace pal

// One picture the generator writes: folder relative to the repository root, file name,
// whether the folder's .qrc lists it, and the routine that draws it.
struct Picture {
    QString folder;
    QString name;
    bool inResources;
    QImage (*draw)();
};

QVector<Picture> shellPictures();   // panel, start button, turn off, About
QVector<Picture> iconPictures();    // small icons of menus and buttons
QVector<Picture> wizardPictures();  // logo and watermark of the update wizard

// A transparent canvas with fixed resolution, so every run writes the same bytes.
QImage canvas(int w, int h);
// A painter with every antialiasing hint on.
void prepare(QPainter &p);

QColor mix(const QColor &a, const QColor &b, qreal t);
QColor alpha(const QColor &c, int a);
QColor lighter(const QColor &c, qreal t);   // towards white
QColor darker(const QColor &c, qreal t);    // towards black

QPainterPath roundRect(const QRectF &r, qreal radius);
QPainterPath circle(const QPointF &c, qreal r);

// The shell's emblem: three kelp fronds rising from one root, centred on c, `size` high.
QPainterPath emblem(const QPointF &c, qreal size);

// A glossy round orb (the start button and everything that echoes it) inside a circle.
struct OrbLook {
    QColor core, edge, rim;
    QColor emblemFill;
    qreal gloss = 1.0;       // strength of the upper highlight
    qreal emblemDrop = 0.0;  // emblem pushed down, for the pressed look
    QColor ring = Qt::transparent;  // an inner ring of light (hover, pulse)
    qreal ringWidth = 0.0;
};
// The start button's resting look, which the other orbs start from.
OrbLook normalOrb();
void drawOrb(QPainter &p, const QPointF &c, qreal r, const OrbLook &look, bool withEmblem = true);

// A soft upper-half gloss over an arbitrary shape.
void glossOver(QPainter &p, const QPainterPath &shape, qreal strength);

} // namespace art
