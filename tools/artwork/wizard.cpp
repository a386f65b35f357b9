// The update wizard's logo (top right of its pages) and watermark (the left band of the first
// and last pages), in the family of the start button.
#include "art.h"

namespace art {

static const QString images = QStringLiteral("images");

static QImage logo()
{
    QImage img = canvas(64, 64);
    QPainter p(&img);
    prepare(p);
    drawOrb(p, QPointF(32, 32), 29, normalOrb());
    return img;
}

// 164 by 314: the size a wizard's watermark has in the modern style.
static QImage watermark()
{
    const int w = 164, h = 314;
    QImage img = canvas(w, h);
    QPainter p(&img);
    prepare(p);
    QLinearGradient g(0, 0, 0, h);
    g.setColorAt(0, pal::desk);
    g.setColorAt(0.55, pal::navy);
    g.setColorAt(1, pal::navyDeep);
    p.fillRect(img.rect(), g);

    // Kelp fronds rising from the foot, faint, behind the orb.
    p.setPen(Qt::NoPen);
    p.setBrush(alpha(pal::ice, 26));
    p.drawPath(emblem(QPointF(w * 0.30, h * 0.80), h * 0.55));
    p.setBrush(alpha(pal::ice, 16));
    p.drawPath(emblem(QPointF(w * 0.78, h * 0.86), h * 0.40));

    drawOrb(p, QPointF(w / 2.0, h * 0.30), 46, normalOrb());

    // A gold rule at the right edge, where the page begins.
    p.fillRect(QRectF(w - 3, 0, 3, h), alpha(pal::gold, 170));
    return img;
}

QVector<Picture> wizardPictures()
{
    return {
        {images, "logo.png", true, logo},
        {images, "watermark.png", true, watermark},
    };
}

} // namespace art
