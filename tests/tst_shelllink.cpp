// Shortcut files: what the reader takes from each part, what the writer keeps, damaged files.

#include "platform/shelllink/shelllink.h"
#include "testmain.h"

using namespace shelllink;

namespace {

QByteArray le(quint32 v, int size = 4)
{
    QByteArray b;
    for (int i = 0; i < size; ++i)
        b += char(v >> (8 * i));
    return b;
}

QByteArray header(quint32 flags)
{
    const QByteArray b = QByteArray::fromHex("4c000000 0114020000000000c000000000000046") + le(flags);
    return b.leftJustified(76, '\0');
}

QByteArray wide(const QString &s)
{
    QByteArray b;
    for (QChar c : s + QChar(0))
        b += le(c.unicode(), 2);
    return b;
}

// An item ID list as Windows writes it for C:\test\a.txt: the computer, the drive, a folder item
// whose extension block (version 7) carries the long name, a file item with a short name only.
QByteArray idListFor()
{
    // The extension block: size, version, signature, times, version 7 fields, the long name, its offset.
    const QByteArray ext = QByteArray::fromHex("3200 0700 0400efbe 0000000000000000 2600")
                           + QByteArray(20, '\0') + wide("test") + le(14, 2);
    // Type, size, time and attributes, then the short name padded to even.
    const QByteArray items[] = {
        QByteArray::fromHex("1f50e04fd020ea3a6910a2d808002b30309d"),
        QByteArray("\x2f" "C:\\").leftJustified(22, '\0'),
        QByteArray("\x31", 2).leftJustified(12, '\0') + QByteArray("TEST~1\0\0", 8) + ext,
        QByteArray("\x32", 2).leftJustified(12, '\0') + QByteArray("a.txt\0", 6)};
    QByteArray list;
    for (const QByteArray &item : items)
        list += le(item.size() + 2, 2) + item;
    return le(list.size() + 2, 2) + list + le(0, 2);
}

// LinkInfo with ANSI strings only (header of 0x1C bytes): base path and a suffix.
QByteArray ansiLinkInfo(const QByteArray &base, const QByteArray &suffix)
{
    const QByteArray volume = QByteArray::fromHex("11000000 03000000 00000000 10000000 00");
    const quint32 baseAt = 0x1C + quint32(volume.size());
    const quint32 suffixAt = baseAt + quint32(base.size()) + 1;
    QByteArray b;
    for (quint32 v : {suffixAt + quint32(suffix.size()) + 1, 0x1Cu, 1u, 0x1Cu, baseAt, 0u, suffixAt})
        b += le(v);
    return b + volume + base + '\0' + suffix + '\0';
}

QByteArray environmentBlockFor(const QString &target)
{
    return QByteArray::fromHex("14030000 010000a0") + target.toLatin1().leftJustified(260, '\0')
        + wide(target).leftJustified(520, '\0');
}

const QByteArray consoleBlock = QByteArray::fromHex("0c000000 040000a0 e4040000");   // a console code page
const QByteArray terminal(4, '\0');

} // namespace

class TestShellLink : public QObject {
    Q_OBJECT
private slots:
    void readsFields_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("workingDirectory");
        QTest::addColumn<QString>("arguments");
        QTest::newRow("link information wins over the ID list")
            << header(HasLinkTargetIDList | HasLinkInfo) + idListFor() + ansiLinkInfo("D:\\b.exe", "")
                   + terminal << "D:\\b.exe" << "" << "";
        QTest::newRow("ID list alone: long names from the extension block, short ones else")
            << header(HasLinkTargetIDList) + idListFor() + terminal << "C:\\test\\a.txt" << "" << "";
        QTest::newRow("ANSI base path joined with its suffix")
            << header(HasLinkInfo) + ansiLinkInfo("C:\\Tools", "bin\\t\xe9.exe") + terminal
            << "C:\\Tools\\bin\\t\u00e9.exe" << "" << "";
        QTest::newRow("link information to be ignored is skipped")
            << header(HasLinkInfo | ForceNoLinkInfo) + ansiLinkInfo("C:\\a", "") + terminal << "" << "" << "";
        QTest::newRow("environment block when nothing else names a target")
            << header(HasExpString | IsUnicode) + environmentBlockFor("%SystemRoot%\\notepad.exe") + terminal
            << "%SystemRoot%\\notepad.exe" << "" << "";
        QTest::newRow("written: program with folder and arguments")
            << write(make("X:\\Tools\\DiskEditor.exe", "X:\\Tools", "-d 0 \"two words\""))
            << "X:\\Tools\\DiskEditor.exe" << "X:\\Tools" << "-d 0 \"two words\"";
        const QString cyrillic = "E:\\\u0418\u043d\u0441\u0442\u0440", tool = cyrillic + "\\\u5de5\u5177.exe";
        const QString deep = "C:\\" + QString(300, 'p') + "\\t.exe";
        QTest::newRow("written: letters outside the code page")
            << write(make(tool, cyrillic)) << tool << cyrillic << "";
        QTest::newRow("written: past 260 characters") << write(make(deep, "C:\\")) << deep << "C:\\" << "";
    }

    void readsFields()
    {
        QFETCH(QByteArray, data);
        QFETCH(QString, target);
        QFETCH(QString, workingDirectory);
        QFETCH(QString, arguments);
        Link link;
        QVERIFY(read(data, &link));
        QCOMPARE(QStringList({link.target, link.workingDirectory, link.arguments}),
                 QStringList({target, workingDirectory, arguments}));
    }

    // A new target drops the ID list, the link information and the target's block; the rest stays.
    void retargetKeepsTheRest()
    {
        Link old;
        const quint32 flags = HasLinkTargetIDList | HasLinkInfo | HasArguments | HasExpString | IsUnicode;
        QVERIFY(read(header(flags | 0x2000) + idListFor() + ansiLinkInfo("D:\\Tools\\t.exe", "")
                         + QByteArray("\x02\x00-\0x\0", 6) + environmentBlockFor("D:\\Tools\\t.exe")
                         + consoleBlock + terminal,
                     &old));
        QCOMPARE(old.target, QString("D:\\Tools\\t.exe"));
        Link moved = old, back;
        setTarget(&moved, "F:\\Tools\\t.exe");
        moved.workingDirectory = "F:\\Tools";
        QVERIFY(read(write(moved), &back));
        QCOMPARE(QStringList({back.target, back.workingDirectory, back.arguments}),
                 QStringList({"F:\\Tools\\t.exe", "F:\\Tools", "-x"}));
        QVERIFY(back.idList.isEmpty());
        QCOMPARE(back.extraData, consoleBlock);
        QCOMPARE(back.flags & (HasExpString | 0x2000), quint32(0x2000));
    }

    void damagedFilesAreTurnedAway_data()
    {
        QTest::addColumn<QByteArray>("data");
        const QByteArray good = write(make("C:\\a.exe", "C:\\"));
        QTest::newRow("zero-byte shortcut of an old demo") << QByteArray();
        QTest::newRow("wrong class id") << QByteArray(good).replace(10, 1, "\x55");
        QTest::newRow("string longer than the file") << header(HasName | IsUnicode) + "\xff\xff";
        QTest::newRow("link information past the end") << header(HasLinkInfo) + QByteArray::fromHex("f0ffff7f");
        QTest::newRow("ID list past the end") << header(HasLinkTargetIDList) + QByteArray::fromHex("0040");
        QTest::newRow("over a megabyte") << good + QByteArray(maxFileSize, 'x');
    }

    void damagedFilesAreTurnedAway()
    {
        QFETCH(QByteArray, data);
        Link link;
        link.target = "untouched";
        QVERIFY(!read(data, &link));
        QCOMPARE(link.target, QString("untouched"));
    }
};

KELPIE_TEST_MAIN(TestShellLink)
#include "tst_shelllink.moc"
