#include "fontwarmup.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QThread>

FontWarmUp::FontWarmUp(const QList<QFont> &fonts)
{
    thread = QThread::create([this, fonts] {
        familyCount = QFontDatabase().families().size();
        for (const QFont &font : fonts)
            QFontMetrics(font).height();
    });
    thread->start();
}

FontWarmUp::~FontWarmUp()
{
    wait();
}

void FontWarmUp::wait()
{
    if (!thread)
        return;
    thread->wait();
    delete thread;
    thread = nullptr;
}
