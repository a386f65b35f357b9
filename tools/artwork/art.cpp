#include "art.h"

#include <QLineF>
#include <QRadialGradient>
#include <QtMath>

namespace art {

QImage canvas(int w, int h)
{
    QImage img(w, h, QImage::Format_ARGB32_Premultiplied);
    img.fill(Qt::transparent);
    // 96 dpi, fixed, so that the pHYs chunk never depends on the machine.
    img.setDotsPerMeterX(3780);
    img.setDotsPerMeterY(3780);
    return img;
}

void prepare(QPainter &p)
{
    p.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform
                     | QPainter::TextAntialiasing);
}

QColor mix(const QColor &a, const QColor &b, qreal t)
{
    auto ch = [t](int x, int y) { return qBound(0, qRound(x + (y - x) * t), 255); };
    return QColor(ch(a.red(), b.red()), ch(a.green(), b.green()), ch(a.blue(), b.blue()),
                  ch(a.alpha(), b.alpha()));
}

QColor alpha(const QColor &c, int a)
{
    QColor r = c;
    r.setAlpha(qBound(0, a, 255));
    return r;
}

QColor lighter(const QColor &c, qreal t) { return mix(c, alpha(Qt::white, c.alpha()), t); }
QColor darker(const QColor &c, qreal t) { return mix(c, alpha(Qt::black, c.alpha()), t); }

QPainterPath roundRect(const QRectF &r, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(r, radius, radius);
    return path;
}

QPainterPath circle(const QPointF &c, qreal r)
{
    QPainterPath path;
    path.addEllipse(c, r, r);
    return path;
}

// A leaf from a to b, `w` wide at its widest, bowed sideways by `bend`.
static QPainterPath leaf(const QPointF &a, const QPointF &b, qreal w, qreal bend)
{
    const QPointF d = b - a;
    const qreal len = qSqrt(d.x() * d.x() + d.y() * d.y());
    const QPointF n(-d.y() / len, d.x() / len);
    QPainterPath path(a);
    path.cubicTo(a + d * 0.30 + n * (w + bend), a + d * 0.78 + n * (w * 0.55 + bend * 1.2), b);
    path.cubicTo(a + d * 0.78 + n * (-w * 0.55 + bend * 1.2), a + d * 0.30 + n * (-w + bend), a);
    path.closeSubpath();
    return path;
}

QPainterPath emblem(const QPointF &c, qreal s)
{
    const QPointF root(c.x(), c.y() + s * 0.48);
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addPath(leaf(root, QPointF(c.x() + s * 0.04, c.y() - s * 0.50), s * 0.15, s * 0.05));
    path.addPath(leaf(root, QPointF(c.x() - s * 0.40, c.y() - s * 0.20), s * 0.12, s * 0.10));
    path.addPath(leaf(root, QPointF(c.x() + s * 0.38, c.y() - s * 0.06), s * 0.11, -s * 0.09));
    return path.simplified();
}

void glossOver(QPainter &p, const QPainterPath &shape, qreal strength)
{
    const QRectF b = shape.boundingRect();
    QLinearGradient g(b.topLeft(), QPointF(b.left(), b.center().y()));
    g.setColorAt(0, alpha(Qt::white, qRound(110 * strength)));
    g.setColorAt(1, alpha(Qt::white, qRound(18 * strength)));
    QPainterPath upper;
    upper.addRect(QRectF(b.left(), b.top(), b.width(), b.height() * 0.5));
    p.save();
    p.setPen(Qt::NoPen);
    p.setBrush(g);
    p.drawPath(shape.intersected(upper));
    p.restore();
}

void drawOrb(QPainter &p, const QPointF &c, qreal r, const OrbLook &look, bool withEmblem)
{
    p.save();
    p.setPen(Qt::NoPen);

    // Rim: dark at the top, catching light at the bottom, as if set into the panel.
    QLinearGradient rim(c.x(), c.y() - r, c.x(), c.y() + r);
    rim.setColorAt(0, darker(look.rim, 0.55));
    rim.setColorAt(1, lighter(look.rim, 0.35));
    p.setBrush(rim);
    p.drawEllipse(c, r, r);

    // Body: light gathers low in the orb, like a lit glass ball.
    const qreal br = r * 0.90;
    QRadialGradient body(QPointF(c.x(), c.y() + br * 0.45), br * 1.45,
                         QPointF(c.x(), c.y() + br * 0.55));
    body.setColorAt(0, look.core);
    body.setColorAt(0.55, mix(look.core, look.edge, 0.6));
    body.setColorAt(1, look.edge);
    p.setBrush(body);
    p.drawEllipse(c, br, br);

    if (look.ringWidth > 0) {
        QRadialGradient ring(c, br);
        const qreal inner = qMax<qreal>(0.0, 1.0 - look.ringWidth / br);
        ring.setColorAt(0, alpha(look.ring, 0));
        ring.setColorAt(inner, alpha(look.ring, 0));
        ring.setColorAt(1, look.ring);
        p.setBrush(ring);
        p.drawEllipse(c, br, br);
    }

    if (withEmblem) {
        const QPointF ec(c.x(), c.y() + br * 0.06 + look.emblemDrop);
        const QPainterPath e = emblem(ec, br * 1.05);
        p.setBrush(alpha(Qt::black, 70));
        p.drawPath(e.translated(0, qMax<qreal>(0.8, r * 0.03)));
        QLinearGradient ef(ec.x(), ec.y() - br * 0.5, ec.x(), ec.y() + br * 0.5);
        ef.setColorAt(0, lighter(look.emblemFill, 0.45));
        ef.setColorAt(1, look.emblemFill);
        p.setBrush(ef);
        p.drawPath(e);
    }

    // Upper highlight: a flattened ellipse, strong at its top edge.
    const QRectF gl(c.x() - br * 0.72, c.y() - br * 0.94, br * 1.44, br * 0.98);
    QLinearGradient gg(gl.topLeft(), gl.bottomLeft());
    gg.setColorAt(0, alpha(Qt::white, qRound(190 * look.gloss)));
    gg.setColorAt(0.55, alpha(Qt::white, qRound(55 * look.gloss)));
    gg.setColorAt(1, alpha(Qt::white, 0));
    p.setBrush(gg);
    p.drawEllipse(gl);

    // Lower reflected light.
    QRadialGradient low(QPointF(c.x(), c.y() + br * 0.95), br * 0.7);
    low.setColorAt(0, alpha(lighter(look.core, 0.5), qRound(120 * look.gloss)));
    low.setColorAt(1, alpha(look.core, 0));
    p.setBrush(low);
    QPainterPath clip = circle(c, br);
    p.drawPath(clip.intersected(circle(QPointF(c.x(), c.y() + br * 0.95), br * 0.7)));
    p.restore();
}

} // namespace art
