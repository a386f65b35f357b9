// inbox.txt of the simulated machine: the input is what stands in the file when the shell reads
// it, then the file shrinks to its first half and is read again from its start.

#include "fuzzing.h"
#include "platform/sim/simplatform.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

namespace {

SimPlatform *machine = nullptr;
QString inbox;

void writeInbox(const QByteArray &content)
{
    QFile f(inbox);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(content) != content.size())
        abort();   // the run is worthless if the file does not hold the input
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication app(*argc, *argv);
    static QTemporaryDir dir;
    inbox = dir.path() + QStringLiteral("/inbox.txt");
    machine = new SimPlatform(dir.path());
    for (int id = 1; id <= 4; ++id)
        machine->registerHotKey(0, id, 0, 0x5b);
    machine->setMessageSink([](const NativeMessage &m) {
        if (m.kind == NativeMessage::CopyData && m.text.contains(QLatin1Char('\n')))
            abort();   // a message never spans lines
    });
    machine->installKeyboardHook([](const KeyHookEvent &e) {
        if (e.vkCode == 0 || e.vkCode > 255)
            abort();
        return false;
    });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray content = fuzzing::bytes(data, size);
    writeInbox(QByteArray());
    machine->pollInbox();
    writeInbox(content);
    machine->pollInbox();
    writeInbox(content.left(content.size() / 2));
    machine->pollInbox();
    return 0;
}
