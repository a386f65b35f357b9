// The panel strip, the start button, the turn off dialog and the About background.
#include "art.h"

#include <QFont>
#include <QRadialGradient>

namespace art {

static const QString res = QStringLiteral("my_shell1/Resources");

// ---- panel ---------------------------------------------------------------------------

// The panel is scaled to the screen's width, so every column is the same: only the
// vertical run of colour matters.
static QImage panelStrip(const QColor &top, const QColor &bottom, qreal gloss)
{
    const int w = 128, h = 64;
    QImage img = canvas(w, h);
    QPainter p(&img);
    prepare(p);
    QLinearGradient g(0, 0, 0, h);
    g.setColorAt(0.0, lighter(top, 0.10));
    g.setColorAt(0.47, mix(top, bottom, 0.35));
    g.setColorAt(0.5, mix(top, bottom, 0.5));
    g.setColorAt(1.0, bottom);
    p.fillRect(img.rect(), g);

    // The gloss: the upper half a shade lighter, with a soft break at the middle.
    QLinearGradient s(0, 0, 0, h * 0.5);
    s.setColorAt(0, alpha(Qt::white, qRound(46 * gloss)));
    s.setColorAt(0.85, alpha(Qt::white, qRound(14 * gloss)));
    s.setColorAt(1, alpha(Qt::white, qRound(6 * gloss)));
    p.fillRect(QRectF(0, 0, w, h * 0.5), s);

    // A dark seam against the desktop, a light bevel under it, and a faint shadow at the foot.
    p.fillRect(QRectF(0, 0, w, 1), darker(bottom, 0.45));
    p.fillRect(QRectF(0, 1, w, 1), alpha(lighter(top, 0.55), 200));
    p.fillRect(QRectF(0, 2, w, 1), alpha(lighter(top, 0.25), 90));
    p.fillRect(QRectF(0, h - 1, w, 1), darker(bottom, 0.35));
    return img;
}

static QImage panel2() { return panelStrip(pal::navy, pal::navyDeep, 1.0); }
static QImage panel1() { return panelStrip(pal::blue, pal::navyDark, 1.2); }
static QImage panel3() { return panelStrip(pal::navyDark, pal::navyDeep, 0.7); }

// The 3-pixel edge that shows at the bottom of the screen while the panel is away.
static QImage kant()
{
    QImage img = canvas(128, 3);
    QPainter p(&img);
    p.fillRect(QRect(0, 0, 128, 1), darker(pal::navyDeep, 0.3));
    p.fillRect(QRect(0, 1, 128, 1), lighter(pal::sky, 0.35));
    p.fillRect(QRect(0, 2, 128, 1), pal::blue);
    return img;
}

// ---- start button ------------------------------------------------------------------------

// 64 by 61: the button paints into exactly that target, and its mask comes from the
// normal picture, so every look stays inside the same disc.
static const QPointF orbCentre(32, 30.5);
static const qreal orbRadius = 29;

OrbLook normalOrb()
{
    OrbLook o;
    o.core = QColor(0x4a, 0xa8, 0xe8);
    o.edge = QColor(0x0a, 0x2e, 0x52);
    o.rim = QColor(0x2c, 0x6c, 0xa4);
    o.emblemFill = QColor(0xf2, 0xf6, 0xfa);
    return o;
}

static QImage orbPicture(const OrbLook &look)
{
    QImage img = canvas(64, 61);
    QPainter p(&img);
    prepare(p);
    drawOrb(p, orbCentre, orbRadius, look);
    return img;
}

static QImage startNormal() { return orbPicture(normalOrb()); }

static QImage startHover()
{
    OrbLook o = normalOrb();
    o.core = QColor(0x78, 0xc8, 0xff);
    o.edge = QColor(0x12, 0x46, 0x78);
    o.rim = QColor(0x6a, 0xa8, 0xd8);
    o.emblemFill = pal::gold;
    o.ring = alpha(pal::gold, 150);
    o.ringWidth = 4;
    o.gloss = 1.15;
    return orbPicture(o);
}

static QImage startPressed()
{
    OrbLook o = normalOrb();
    o.core = QColor(0x2a, 0x80, 0xc4);
    o.edge = QColor(0x05, 0x1c, 0x34);
    o.rim = QColor(0x16, 0x46, 0x72);
    o.emblemFill = lighter(pal::gold, 0.2);
    o.gloss = 0.55;
    o.emblemDrop = 1.0;
    o.ring = alpha(Qt::black, 110);
    o.ringWidth = 5;
    return orbPicture(o);
}

// The pulse: five frames from a faint warm glow to a full gold orb.
static QImage startYellow(int frame)
{
    const qreal t = frame / 5.0;
    OrbLook o = normalOrb();
    o.core = mix(o.core, QColor(0xff, 0xe8, 0x9a), t);
    o.edge = mix(o.edge, QColor(0x8a, 0x5a, 0x0c), t * 0.8);
    o.rim = mix(o.rim, pal::goldDeep, t);
    o.emblemFill = mix(o.emblemFill, QColor(0xff, 0xff, 0xff), t);
    o.ring = alpha(pal::gold, qRound(60 + 150 * t));
    o.ringWidth = 2 + 5 * t;
    o.gloss = 1.0 + 0.2 * t;
    return orbPicture(o);
}
static QImage yellow1() { return startYellow(1); }
static QImage yellow2() { return startYellow(2); }
static QImage yellow3() { return startYellow(3); }
static QImage yellow4() { return startYellow(4); }
static QImage yellow5() { return startYellow(5); }

// ---- turn off dialog ---------------------------------------------------------------------

static QFont titleFont(int px, bool bold)
{
    QFont f(QStringLiteral("DejaVu Sans"));
    f.setPixelSize(px);
    f.setBold(bold);
    f.setHintingPreference(QFont::PreferNoHinting);
    return f;
}

// The dialog is 314 by 140; its buttons stand at (95, 45) and (175, 45), 48 square, the
// captions under them at y 95, Cancel at (230, 110).
static QImage turnOff()
{
    const int w = 314, h = 140;
    QImage img = canvas(w, h);
    QPainter p(&img);
    prepare(p);

    QLinearGradient g(0, 0, 0, h);
    g.setColorAt(0, pal::navy);
    g.setColorAt(1, pal::navyDeep);
    p.fillRect(img.rect(), g);

    // Title band with the emblem, echoing the panel's gloss.
    const QRectF band(0, 0, w, 32);
    QLinearGradient bg(0, 0, 0, 32);
    bg.setColorAt(0, lighter(pal::blue, 0.12));
    bg.setColorAt(0.5, pal::navy);
    bg.setColorAt(0.52, darker(pal::navy, 0.08));
    bg.setColorAt(1, pal::navyDark);
    p.fillRect(band, bg);
    p.fillRect(QRectF(0, 32, w, 1), alpha(pal::gold, 170));
    p.fillRect(QRectF(0, 33, w, 1), alpha(Qt::black, 80));

    OrbLook o = normalOrb();
    drawOrb(p, QPointF(18, 16), 11, o);
    p.setFont(titleFont(14, true));
    p.setPen(Qt::white);
    p.drawText(QRectF(36, 0, 260, 32), Qt::AlignVCenter | Qt::AlignLeft,
               QStringLiteral("Turn off computer"));

    // A soft well behind the two buttons and their captions.
    const QRectF well(80, 40, 160, 76);
    p.setPen(QPen(alpha(Qt::white, 28), 1));
    QLinearGradient wg(well.topLeft(), well.bottomLeft());
    wg.setColorAt(0, alpha(Qt::black, 60));
    wg.setColorAt(1, alpha(Qt::black, 20));
    p.setBrush(wg);
    p.drawRoundedRect(well.adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);

    // Frame: the dialog has no title bar, so it draws its own edge.
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(darker(pal::navyDeep, 0.4), 1));
    p.drawRect(QRectF(0.5, 0.5, w - 1, h - 1));
    p.setPen(QPen(alpha(lighter(pal::sky, 0.3), 70), 1));
    p.drawRect(QRectF(1.5, 1.5, w - 3, h - 3));
    return img;
}

// A 48 by 48 glossy tile, rounded by 6 as the style sheet clips it.
enum class TileState { Normal, Hover, Pressed };

static QImage tile(const QColor &base, TileState state, void (*glyph)(QPainter &, qreal drop))
{
    QImage img = canvas(48, 48);
    QPainter p(&img);
    prepare(p);
    QColor top = lighter(base, 0.25), bottom = darker(base, 0.35);
    if (state == TileState::Hover) {
        top = lighter(base, 0.45);
        bottom = darker(base, 0.15);
    } else if (state == TileState::Pressed) {
        top = darker(base, 0.35);
        bottom = darker(base, 0.05);
    }
    const QRectF r(0.5, 0.5, 47, 47);
    const QPainterPath shape = roundRect(r, 6);
    QLinearGradient g(0, 0, 0, 48);
    g.setColorAt(0, top);
    g.setColorAt(1, bottom);
    p.setPen(QPen(darker(base, 0.6), 1));
    p.setBrush(g);
    p.drawPath(shape);

    if (state == TileState::Pressed) {
        // Pressed in: a shadow along the upper inside edge instead of the gloss.
        QLinearGradient in(0, 0, 0, 10);
        in.setColorAt(0, alpha(Qt::black, 110));
        in.setColorAt(1, alpha(Qt::black, 0));
        p.setPen(Qt::NoPen);
        p.setBrush(in);
        p.drawPath(roundRect(r.adjusted(1, 1, -1, -1), 5));
    } else {
        glossOver(p, roundRect(r.adjusted(1.5, 1.5, -1.5, -1.5), 5), state == TileState::Hover ? 1.3 : 1.0);
    }
    if (state == TileState::Hover) {
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(alpha(pal::gold, 230), 2));
        p.drawPath(roundRect(r.adjusted(1, 1, -1, -1), 5));
    } else {
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(alpha(Qt::white, 50), 1));
        p.drawPath(roundRect(r.adjusted(1, 1, -1, -1), 5));
    }
    glyph(p, state == TileState::Pressed ? 1.0 : 0.0);
    return img;
}

// The stroke of both glyphs: white with a dark shadow one pixel below.
static void glyphStroke(QPainter &p, const QPainterPath &path, qreal drop)
{
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(alpha(Qt::black, 90), 4.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawPath(path.translated(0, drop + 1.2));
    p.setPen(QPen(Qt::white, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawPath(path.translated(0, drop));
}

static void powerGlyph(QPainter &p, qreal drop)
{
    const QRectF ring(13, 14, 22, 22);
    // The arc opens at the top around the bar.
    QPainterPath arc;
    arc.arcMoveTo(ring, 120);
    arc.arcTo(ring, 120, 300);
    arc.moveTo(24, 10.5);
    arc.lineTo(24, 24);
    glyphStroke(p, arc, drop);
}

static void restartGlyph(QPainter &p, qreal drop)
{
    const QRectF ring(13, 13, 22, 22);
    QPainterPath arc;
    arc.arcMoveTo(ring, 100);
    arc.arcTo(ring, 100, 290);
    glyphStroke(p, arc, drop);
    // Arrow head at the open end (the start angle, 100 degrees, near the top).
    QPainterPath head;
    head.moveTo(27.5, 7.5);
    head.lineTo(20.5, 13.0);
    head.lineTo(28.5, 17.5);
    head.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(alpha(Qt::black, 90));
    p.drawPath(head.translated(0, drop + 1.2));
    p.setBrush(Qt::white);
    p.setPen(QPen(Qt::white, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawPath(head.translated(0, drop));
}

static const QColor offBase(0xc8, 0x3a, 0x2c);
static const QColor restartBase(0x2a, 0x9a, 0x48);

static QImage tNormal() { return tile(offBase, TileState::Normal, powerGlyph); }
static QImage tHover() { return tile(offBase, TileState::Hover, powerGlyph); }
static QImage tPressed() { return tile(offBase, TileState::Pressed, powerGlyph); }
static QImage rNormal() { return tile(restartBase, TileState::Normal, restartGlyph); }
static QImage rHover() { return tile(restartBase, TileState::Hover, restartGlyph); }
static QImage rPressed() { return tile(restartBase, TileState::Pressed, restartGlyph); }

// ---- About ---------------------------------------------------------------------------------

// 400 by 284. The dialog takes its mask from this picture: a rounded body with the emblem's
// orb standing out above its top edge. The labels lie at y 60 (web text, right), y 145
// (version), 172 to 227 (notice) and 251 to 274 (product line, OK).
static QImage fonAbout()
{
    const int w = 400, h = 284;
    QImage img = canvas(w, h);
    QPainter p(&img);
    prepare(p);

    const QRectF bodyRect(0.5, 24.5, w - 1, h - 25);
    const QPainterPath body = roundRect(bodyRect, 16);
    const QPointF oc(78, 70);
    const qreal orr = 60;
    const QPainterPath shape = body.united(circle(oc, orr + 4));

    QLinearGradient g(0, 24, 0, h);
    g.setColorAt(0, lighter(pal::navy, 0.08));
    g.setColorAt(0.6, pal::navyDark);
    g.setColorAt(1, pal::navyDeep);
    p.setPen(Qt::NoPen);
    p.setBrush(g);
    p.drawPath(shape);

    // Gloss on the upper part of the body, as on the panel.
    QPainterPath upper;
    upper.addRect(QRectF(0, 24, w, 100));
    QLinearGradient s(0, 24, 0, 124);
    s.setColorAt(0, alpha(Qt::white, 44));
    s.setColorAt(1, alpha(Qt::white, 6));
    p.setBrush(s);
    p.drawPath(body.intersected(upper));

    // Kelp fronds drifting up from the lower right corner, faint.
    p.save();
    p.setClipPath(body);
    for (int i = 0; i < 3; ++i) {
        const QPainterPath e = emblem(QPointF(330 + i * 26, 210 - i * 10), 150 - i * 30);
        p.setBrush(alpha(pal::sky, 18 + i * 6));
        p.drawPath(e);
    }
    p.restore();

    // The footer behind OK and the product line.
    QPainterPath foot;
    foot.addRect(QRectF(0, 240, w, h - 240));
    QLinearGradient fg(0, 240, 0, h);
    fg.setColorAt(0, alpha(Qt::black, 70));
    fg.setColorAt(1, alpha(Qt::black, 110));
    p.setBrush(fg);
    p.drawPath(body.intersected(foot));
    p.fillRect(QRectF(12, 240, w - 24, 1), alpha(pal::gold, 120));

    // Orb with its own ring, standing proud of the body.
    p.setBrush(darker(pal::navyDeep, 0.3));
    p.drawEllipse(oc, orr + 4, orr + 4);
    drawOrb(p, oc, orr, normalOrb());

    // Name and a gold rule; the web text label sits at (230, 60) under it.
    p.setFont(titleFont(30, true));
    p.setPen(Qt::white);
    p.drawText(QRectF(150, 24, 240, 36), Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("Kelpie"));
    p.setFont(titleFont(12, false));
    p.setPen(pal::ice);
    p.drawText(QRectF(152, 58, 200, 18), Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("desktop shell"));
    QLinearGradient rule(150, 0, 390, 0);
    rule.setColorAt(0, pal::gold);
    rule.setColorAt(1, alpha(pal::gold, 0));
    p.fillRect(QRectF(150, 90, 240, 2), rule);
    p.fillRect(QRectF(16, 138, 368, 1), alpha(Qt::white, 40));

    // Edge of the shape: a thin light line inside, so the cut-out reads as a frame.
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(alpha(lighter(pal::sky, 0.4), 90), 1.2));
    p.drawPath(shape);
    return img;
}

QVector<Picture> shellPictures()
{
    return {
        {res, "panel2.png", true, panel2},
        {res, "panel1.png", true, panel1},
        {res, "panel3.png", true, panel3},
        {res, "kant.png", true, kant},
        {res, "b_Normal.png", true, startNormal},
        {res, "b_Hover.png", true, startHover},
        {res, "b_Pressed.png", true, startPressed},
        // The pulse frames stay out of the resources: the shell loads them and finds nothing.
        {res, "b_Yellow1.png", false, yellow1},
        {res, "b_Yellow2.png", false, yellow2},
        {res, "b_Yellow3.png", false, yellow3},
        {res, "b_Yellow4.png", false, yellow4},
        {res, "b_Yellow5.png", false, yellow5},
        {res, "turnOff.png", true, turnOff},
        {res, "buttn_t_normal.png", true, tNormal},
        {res, "buttn_t_hover.png", true, tHover},
        {res, "buttn_t_pressed.png", true, tPressed},
        {res, "buttn_r_normal.png", true, rNormal},
        {res, "buttn_r_hover.png", true, rHover},
        {res, "buttn_r_pressed.png", true, rPressed},
        {res, "fonAbout.png", true, fonAbout},
    };
}

} // namespace art
