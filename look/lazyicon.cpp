#include "lazyicon.h"

#include <QFileInfo>
#include <QIconEngine>

#include <memory>

namespace {

// Shared by the engine's clones, so that copies of the icon make it once.
struct LazySource {
    std::function<QIcon()> make;
    QIcon icon;

    const QIcon &get()
    {
        if (make) {
            icon = make();
            make = nullptr;
        }
        return icon;
    }
};

class LazyIconEngine : public QIconEngine {
public:
    explicit LazyIconEngine(std::shared_ptr<LazySource> source) : source(std::move(source)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        source->get().paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return source->get().actualSize(size, mode, state);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return source->get().pixmap(size, mode, state);
    }
    QIconEngine *clone() const override { return new LazyIconEngine(source); }
    QString key() const override { return QStringLiteral("LazyIconEngine"); }
    void virtual_hook(int id, void *data) override
    {
        switch (id) {
        case AvailableSizesHook: {
            auto &arg = *static_cast<AvailableSizesArgument *>(data);
            arg.sizes = source->get().availableSizes(arg.mode, arg.state);
            return;
        }
        case IconNameHook:
            *static_cast<QString *>(data) = source->get().name();
            return;
        case IsNullHook:
            *static_cast<bool *>(data) = source->get().isNull();
            return;
        default:
            QIconEngine::virtual_hook(id, data);
        }
    }

private:
    std::shared_ptr<LazySource> source;
};

} // namespace

QIcon lazyIcon(std::function<QIcon()> make)
{
    auto source = std::make_shared<LazySource>();
    source->make = std::move(make);
    return QIcon(new LazyIconEngine(std::move(source)));
}

QIcon lazyFileIcon(const QString &path)
{
    // A relative name is taken against the working directory of now, as QIcon(path) would.
    const QString name = path.isEmpty() || path.startsWith(QLatin1Char(':'))
                             ? path
                             : QFileInfo(path).absoluteFilePath();
    return lazyIcon([name] { return QIcon(name); });
}
