#pragma once
// The first text a program lays out waits for the font set-up: the system's font configuration
// read and the font families listed, and each font's family matched. This does that work on a
// second thread while the caller goes on; the font database is shared between threads, so what
// it finds is there when the caller's widgets first measure text. Needs the application made.

#include <QFont>
#include <QList>

#include <atomic>

class QThread;

class FontWarmUp {
public:
    explicit FontWarmUp(const QList<QFont> &fonts);
    ~FontWarmUp();   // waits for the thread
    FontWarmUp(const FontWarmUp &) = delete;
    FontWarmUp &operator=(const FontWarmUp &) = delete;

    // Waits until the work is done; at once when it already is.
    void wait();
    // The families the database listed (0 until the work is done).
    int families() const { return familyCount; }

private:
    QThread *thread = nullptr;
    std::atomic<int> familyCount{0};
};
