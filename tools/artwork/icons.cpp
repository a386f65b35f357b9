// The small icons of the menus, the panel's buttons and the desktop: 32 by 32 (the toolkit
// scales them down to 16 and 24), flat shapes with a little depth, one palette and one line
// weight.
#include "art.h"

#include <QtMath>

namespace art {

static const QString res = QStringLiteral("my_shell1/Resources");

namespace {

QPen outline(const QColor &c, qreal w)
{
    QPen pen(c, w);
    pen.setJoinStyle(Qt::RoundJoin);
    pen.setCapStyle(Qt::RoundCap);
    return pen;
}

// A vertical gradient from a lighter to a darker shade of one colour.
QLinearGradient shade(const QRectF &r, const QColor &c)
{
    QLinearGradient g(r.topLeft(), r.bottomLeft());
    g.setColorAt(0, lighter(c, 0.30));
    g.setColorAt(1, darker(c, 0.15));
    return g;
}

// A filled, outlined shape with its gloss.
void body(QPainter &p, const QPainterPath &shape, const QColor &c, qreal gloss = 0.8)
{
    p.setPen(outline(darker(c, 0.45), 1.2));
    p.setBrush(shade(shape.boundingRect(), c));
    p.drawPath(shape);
    glossOver(p, shape, gloss);
}

// A round badge: the family of the start button, small.
void badge(QPainter &p, const QPointF &c, qreal r, const QColor &colour)
{
    body(p, circle(c, r), colour, 1.0);
}

QPainterPath cross(const QPointF &c, qreal half)
{
    QPainterPath path;
    path.moveTo(c + QPointF(-half, -half));
    path.lineTo(c + QPointF(half, half));
    path.moveTo(c + QPointF(half, -half));
    path.lineTo(c + QPointF(-half, half));
    return path;
}

void strokeWhite(QPainter &p, const QPainterPath &path, qreal w = 3.0)
{
    p.setBrush(Qt::NoBrush);
    p.setPen(outline(Qt::white, w));
    p.drawPath(path);
}

QImage draw32(void (*paint)(QPainter &))
{
    QImage img = canvas(32, 32);
    QPainter p(&img);
    prepare(p);
    paint(p);
    return img;
}

// ---- padlocks -------------------------------------------------------------------------------

void padlock(QPainter &p, bool closed)
{
    QPainterPath shackle;
    if (closed) {
        shackle.moveTo(10, 15);
        shackle.lineTo(10, 10);
        shackle.arcTo(QRectF(10, 3, 12, 13), 180, -180);
        shackle.lineTo(22, 15);
    } else {
        shackle.moveTo(10, 15);
        shackle.lineTo(10, 8);
        shackle.arcTo(QRectF(10, 1, 12, 13), 180, -180);
        shackle.lineTo(22, 9);
    }
    p.setBrush(Qt::NoBrush);
    p.setPen(outline(pal::greyDark, 4.2));
    p.drawPath(shackle);
    p.setPen(outline(pal::grey, 2.2));
    p.drawPath(shackle);
    const QColor metal = closed ? pal::goldDeep : pal::sky;
    body(p, roundRect(QRectF(6, 14, 20, 15), 3), metal);
    p.setPen(Qt::NoPen);
    p.setBrush(darker(metal, 0.55));
    p.drawEllipse(QPointF(16, 20.5), 2.2, 2.2);
    p.drawRect(QRectF(15.2, 21, 1.6, 4.5));
}

QImage lockIcon() { return draw32([](QPainter &p) { padlock(p, true); }); }
QImage unlockIcon() { return draw32([](QPainter &p) { padlock(p, false); }); }

// ---- badges ---------------------------------------------------------------------------------

QImage goIcon()
{
    return draw32([](QPainter &p) {
        badge(p, QPointF(16, 16), 13.5, pal::green);
        QPainterPath arrow;
        arrow.moveTo(9, 16);
        arrow.lineTo(22, 16);
        arrow.moveTo(17, 10.5);
        arrow.lineTo(22.5, 16);
        arrow.lineTo(17, 21.5);
        strokeWhite(p, arrow, 3.2);
    });
}

QImage helpIcon()
{
    return draw32([](QPainter &p) {
        badge(p, QPointF(16, 16), 13.5, pal::blue);
        QPainterPath q;
        q.moveTo(11.5, 12.5);
        q.cubicTo(11.5, 7.5, 20.5, 7.5, 20.5, 12.5);
        q.cubicTo(20.5, 16, 16, 15.5, 16, 19.5);
        strokeWhite(p, q, 3.2);
        p.setPen(Qt::NoPen);
        p.setBrush(Qt::white);
        p.drawEllipse(QPointF(16, 24), 2.0, 2.0);
    });
}

QImage deleteIcon()
{
    return draw32([](QPainter &p) {
        badge(p, QPointF(16, 16), 13.5, pal::red);
        strokeWhite(p, cross(QPointF(16, 16), 5.5), 3.4);
    });
}

QImage cancelIcon()
{
    return draw32([](QPainter &p) {
        body(p, roundRect(QRectF(4, 4, 24, 24), 6), pal::redDark, 0.6);
        strokeWhite(p, cross(QPointF(16, 16), 5), 3.0);
    });
}

QImage refreshIcon()
{
    return draw32([](QPainter &p) {
        badge(p, QPointF(16, 16), 13.5, pal::blue);
        QPainterPath arcs;
        arcs.arcMoveTo(QRectF(8.5, 8.5, 15, 15), 110);
        arcs.arcTo(QRectF(8.5, 8.5, 15, 15), 110, 150);
        strokeWhite(p, arcs, 2.8);
        QPainterPath head;
        head.moveTo(19.5, 22.5);
        head.lineTo(24.5, 23.5);
        head.lineTo(23, 18);
        head.closeSubpath();
        p.setPen(outline(Qt::white, 1.2));
        p.setBrush(Qt::white);
        p.drawPath(head);
    });
}

// ---- things ---------------------------------------------------------------------------------

QImage applicationsAddIcon()
{
    return draw32([](QPainter &p) {
        // A board with its chip, and a green plus: a driver to add.
        body(p, roundRect(QRectF(3, 7, 22, 19), 2.5), pal::greenDark, 0.5);
        body(p, roundRect(QRectF(8, 11, 12, 11), 1.5), pal::greyDark, 0.6);
        p.setPen(outline(pal::gold, 1.4));
        for (int i = 0; i < 4; ++i) {
            p.drawLine(QPointF(10 + i * 2.7, 8.5), QPointF(10 + i * 2.7, 11));
            p.drawLine(QPointF(10 + i * 2.7, 22), QPointF(10 + i * 2.7, 24.5));
        }
        badge(p, QPointF(24, 24), 7, pal::green);
        QPainterPath plus;
        plus.moveTo(20.5, 24);
        plus.lineTo(27.5, 24);
        plus.moveTo(24, 20.5);
        plus.lineTo(24, 27.5);
        strokeWhite(p, plus, 2.4);
    });
}

QImage appExecIcon()
{
    return draw32([](QPainter &p) {
        // A program window with a gear: programs of the user.
        body(p, roundRect(QRectF(3, 5, 24, 20), 2.5), pal::ice, 0.3);
        p.setPen(Qt::NoPen);
        p.setBrush(pal::blue);
        p.drawRect(QRectF(3.6, 5.6, 22.8, 4.4));
        QPainterPath gear;
        const QPointF c(22, 22);
        for (int i = 0; i < 8; ++i) {
            const qreal a = i * M_PI / 4;
            gear.addRect(QRectF(c.x() + 6.2 * qCos(a) - 1.6, c.y() + 6.2 * qSin(a) - 1.6, 3.2, 3.2));
        }
        gear.addEllipse(c, 6, 6);
        gear = gear.simplified();
        body(p, gear, pal::goldDeep, 0.6);
        p.setBrush(pal::ice);
        p.setPen(outline(darker(pal::goldDeep, 0.45), 1.0));
        p.drawEllipse(c, 2.2, 2.2);
    });
}

QImage keyboardIcon()
{
    return draw32([](QPainter &p) {
        body(p, roundRect(QRectF(2, 9, 28, 16), 3), pal::greyDark, 0.5);
        p.setPen(Qt::NoPen);
        p.setBrush(pal::ice);
        for (int row = 0; row < 2; ++row)
            for (int col = 0; col < 6; ++col)
                p.drawRoundedRect(QRectF(4.5 + col * 4 + row * 1.5, 11.5 + row * 4, 3, 3), 0.8, 0.8);
        p.drawRoundedRect(QRectF(8.5, 19.5, 15, 3), 0.8, 0.8);
    });
}

QImage timeIcon()
{
    return draw32([](QPainter &p) {
        badge(p, QPointF(16, 16), 13.5, pal::navy);
        p.setPen(Qt::NoPen);
        p.setBrush(pal::ice);
        p.drawEllipse(QPointF(16, 16), 10.5, 10.5);
        p.setPen(outline(pal::navyDark, 1.2));
        for (int i = 0; i < 12; ++i) {
            const qreal a = i * M_PI / 6;
            p.drawLine(QPointF(16 + 8.5 * qCos(a), 16 + 8.5 * qSin(a)),
                       QPointF(16 + 9.8 * qCos(a), 16 + 9.8 * qSin(a)));
        }
        p.setPen(outline(pal::navyDeep, 2.2));
        p.drawLine(QPointF(16, 16), QPointF(16, 9));
        p.drawLine(QPointF(16, 16), QPointF(21, 18.5));
        p.setPen(outline(pal::red, 1.0));
        p.drawLine(QPointF(16, 16), QPointF(11, 22));
    });
}

void monitor(QPainter &p, const QColor &screen)
{
    body(p, roundRect(QRectF(2.5, 4, 27, 19), 2.5), pal::greyDark, 0.4);
    p.setPen(Qt::NoPen);
    QLinearGradient g(0, 6, 0, 21);
    g.setColorAt(0, lighter(screen, 0.35));
    g.setColorAt(1, screen);
    p.setBrush(g);
    p.drawRect(QRectF(5, 6.5, 22, 14));
    p.setBrush(pal::greyDark);
    p.drawRect(QRectF(13, 23, 6, 3));
    body(p, roundRect(QRectF(8, 26, 16, 3), 1.2), pal::grey, 0.3);
}

QImage displayIcon()
{
    return draw32([](QPainter &p) {
        monitor(p, pal::desk);
        // A little panel along the foot of the screen.
        p.setPen(Qt::NoPen);
        p.setBrush(pal::navyDeep);
        p.drawRect(QRectF(5, 18, 22, 2.5));
        p.setBrush(pal::gold);
        p.drawEllipse(QPointF(7, 19.2), 1.3, 1.3);
    });
}

QImage diagnosticIcon()
{
    return draw32([](QPainter &p) {
        monitor(p, pal::navyDeep);
        QPainterPath pulse;
        pulse.moveTo(6, 14);
        pulse.lineTo(11, 14);
        pulse.lineTo(13, 9);
        pulse.lineTo(16, 19);
        pulse.lineTo(18.5, 12);
        pulse.lineTo(20, 14);
        pulse.lineTo(26, 14);
        p.setBrush(Qt::NoBrush);
        p.setPen(outline(lighter(pal::green, 0.3), 1.8));
        p.drawPath(pulse);
    });
}

QImage exploreIcon()
{
    return draw32([](QPainter &p) {
        QPainterPath back;
        back.moveTo(2.5, 8);
        back.lineTo(11, 8);
        back.lineTo(13.5, 10.5);
        back.lineTo(26.5, 10.5);
        back.lineTo(26.5, 25);
        back.lineTo(2.5, 25);
        back.closeSubpath();
        body(p, back, pal::goldDeep, 0.3);
        body(p, roundRect(QRectF(2.5, 13, 24, 12), 1.5), pal::gold, 0.7);
        // The lens.
        p.setPen(outline(pal::greyDark, 3.2));
        p.drawLine(QPointF(25, 25), QPointF(29.5, 29.5));
        p.setPen(outline(pal::navyDark, 1.6));
        p.setBrush(alpha(pal::ice, 200));
        p.drawEllipse(QPointF(21.5, 21.5), 5, 5);
    });
}

// ---- network --------------------------------------------------------------------------------

void globe(QPainter &p, const QPointF &c, qreal r, const QColor &sea, const QColor &land)
{
    badge(p, c, r, sea);
    p.setPen(outline(alpha(land, 220), qMax(1.0, r / 9)));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(c, r * 0.42, r * 0.98);
    p.drawLine(c - QPointF(r * 0.95, 0), c + QPointF(r * 0.95, 0));
    p.drawLine(c - QPointF(0, r * 0.98), c + QPointF(0, r * 0.98));
    p.drawLine(c + QPointF(-r * 0.82, -r * 0.5), c + QPointF(r * 0.82, -r * 0.5));
    p.drawLine(c + QPointF(-r * 0.82, r * 0.5), c + QPointF(r * 0.82, r * 0.5));
}

QImage netOnIcon()
{
    return draw32([](QPainter &p) {
        globe(p, QPointF(15, 15), 12.5, pal::blue, pal::ice);
        badge(p, QPointF(24.5, 24.5), 6, pal::green);
        QPainterPath tick;
        tick.moveTo(21.5, 24.5);
        tick.lineTo(23.7, 26.8);
        tick.lineTo(27.5, 22);
        strokeWhite(p, tick, 2.0);
    });
}

QImage webOffIcon()
{
    return draw32([](QPainter &p) {
        globe(p, QPointF(15, 15), 12.5, pal::greyDark, pal::grey);
        badge(p, QPointF(24.5, 24.5), 6, pal::red);
        strokeWhite(p, cross(QPointF(24.5, 24.5), 2.6), 2.0);
    });
}

QImage noAdapterIcon()
{
    return draw32([](QPainter &p) {
        // A network plug with its cable, crossed out.
        p.setBrush(Qt::NoBrush);
        p.setPen(outline(pal::greyDark, 3));
        QPainterPath cable;
        cable.moveTo(16, 22);
        cable.cubicTo(16, 28, 8, 26, 5, 30);
        p.drawPath(cable);
        body(p, roundRect(QRectF(9, 5, 14, 17), 2), pal::grey, 0.6);
        p.setPen(Qt::NoPen);
        p.setBrush(pal::goldDeep);
        for (int i = 0; i < 4; ++i)
            p.drawRect(QRectF(11.2 + i * 2.8, 5.8, 1.4, 4));
        p.setPen(outline(Qt::white, 5));
        p.drawLine(QPointF(5, 5), QPointF(27, 27));
        p.setPen(outline(pal::red, 3));
        p.drawLine(QPointF(5, 5), QPointF(27, 27));
    });
}

QImage netIcon(int size)
{
    QImage img = canvas(size, size);
    QPainter p(&img);
    prepare(p);
    p.scale(size / 32.0, size / 32.0);
    globe(p, QPointF(16, 16), 13.5, pal::blue, pal::ice);
    return img;
}

QImage net24() { return netIcon(24); }
QImage net32() { return netIcon(32); }

} // namespace

QVector<Picture> iconPictures()
{
    return {
        {res, "lock.png", true, lockIcon},
        {res, "unlock.png", true, unlockIcon},
        {res, "go.png", true, goIcon},
        {res, "help.png", true, helpIcon},
        {res, "applications_add.png", true, applicationsAddIcon},
        {res, "delete.png", true, deleteIcon},
        {res, "app_exec.png", true, appExecIcon},
        {res, "cancel.png", true, cancelIcon},
        {res, "nav_refresh_blue.png", true, refreshIcon},
        {res, "keyboard_key.png", true, keyboardIcon},
        {res, "time.png", true, timeIcon},
        {res, "Disp.png", true, displayIcon},
        {res, "diagnostic.png", true, diagnosticIcon},
        {res, "explore.png", true, exploreIcon},
        {res, "noAdapter.png", true, noAdapterIcon},
        {res, "net_on.png", true, netOnIcon},
        {res, "web_of.png", true, webOffIcon},
        {res, "net24.png", true, net24},
        {res, "net32.png", true, net32},
    };
}

} // namespace art
