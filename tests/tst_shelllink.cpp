// Shortcut files: what the reader takes from the parts a shortcut may hold, what the writer gives
// back, and damaged files that must be turned away without harm.

#include "platform/shelllink/shelllink.h"
#include "testmachine.h"
#include "testmain.h"

#include <QTemporaryDir>
#include <QtEndian>

using namespace shelllink;

namespace {

void u16(QByteArray *b, quint16 v) { uchar x[2]; qToLittleEndian(v, x); b->append(reinterpret_cast<char *>(x), 2); }
void u32(QByteArray *b, quint32 v) { uchar x[4]; qToLittleEndian(v, x); b->append(reinterpret_cast<char *>(x), 4); }

QByteArray header(quint32 flags)
{
    QByteArray b;
    u32(&b, 0x4C);
    b.append(QByteArray::fromHex("0114020000000000c000000000000046"));
    u32(&b, flags);
    b.append(76 - b.size(), '\0');
    return b;
}

QByteArray wide(const QString &s)
{
    QByteArray b;
    for (QChar c : s)
        u16(&b, c.unicode());
    u16(&b, 0);
    return b;
}

// An item ID list as Windows writes it for C:\test\a.txt: the computer, the drive, a folder item
// whose extension block (version 7) carries the long name, a file item with a short name only.
QByteArray idListFor()
{
    QByteArray items;
    const auto item = [&items](const QByteArray &data) {
        u16(&items, quint16(data.size() + 2));
        items.append(data);
    };
    item(QByteArray::fromHex("1f50e04fd020ea3a6910a2d808002b30309d"));
    item(QByteArray("\x2f" "C:\\").leftJustified(22, '\0'));
    QByteArray ext;
    u16(&ext, 0);                         // size, set below
    u16(&ext, 7);
    u32(&ext, 0xBEEF0004);
    ext.append(8, '\0');                  // times
    u16(&ext, 0x26);
    ext.append(20, '\0');                 // version 7 fields, then the long string's size
    ext.append(wide("test"));
    u16(&ext, 14);
    qToLittleEndian(quint16(ext.size()), reinterpret_cast<uchar *>(ext.data()));
    // Type, size, time and attributes, then the short name padded to even.
    item(QByteArray("\x31", 2) + QByteArray(10, '\0') + QByteArray("TEST~1\0\0", 8) + ext);
    item(QByteArray("\x32", 2) + QByteArray(10, '\0') + QByteArray("a.txt\0", 6));
    u16(&items, 0);
    QByteArray list;
    u16(&list, quint16(items.size()));
    return list + items;
}

// LinkInfo with ANSI strings only (header of 0x1C bytes): base path and a suffix.
QByteArray ansiLinkInfo(const QByteArray &base, const QByteArray &suffix)
{
    QByteArray volume;
    u32(&volume, 0x11); u32(&volume, 3); u32(&volume, 0); u32(&volume, 0x10);
    volume.append('\0');
    const quint32 baseAt = 0x1C + quint32(volume.size());
    const quint32 suffixAt = baseAt + quint32(base.size()) + 1;
    QByteArray b;
    u32(&b, suffixAt + quint32(suffix.size()) + 1);
    u32(&b, 0x1C); u32(&b, 1); u32(&b, 0x1C); u32(&b, baseAt); u32(&b, 0); u32(&b, suffixAt);
    b.append(volume).append(base).append('\0').append(suffix).append('\0');
    return b;
}

QByteArray environmentBlockFor(const QString &target)
{
    QByteArray b;
    u32(&b, 0x314); u32(&b, 0xA0000001);
    QByteArray ansi = target.toLatin1();
    ansi.append(260 - ansi.size(), '\0');
    QByteArray uni = wide(target);
    uni.append(520 - uni.size(), '\0');
    return b + ansi + uni;
}

QByteArray consoleBlock()
{
    QByteArray b;
    u32(&b, 12); u32(&b, 0xA0000004); u32(&b, 1252);   // a console code page block
    return b;
}

QByteArray terminal() { return QByteArray(4, '\0'); }

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
            << header(HasLinkTargetIDList | HasLinkInfo | IsUnicode) + idListFor() + ansiLinkInfo("D:\\other.exe", "") + terminal() << "D:\\other.exe" << "" << "";
        QTest::newRow("ID list alone: long names from the extension block, short ones else")
            << header(HasLinkTargetIDList | IsUnicode) + idListFor() + terminal() << "C:\\test\\a.txt" << "" << "";
        QTest::newRow("ANSI base path joined with its suffix")
            << header(HasLinkInfo) + ansiLinkInfo("C:\\Tools", "bin\\t\xe9.exe") + terminal() << "C:\\Tools\\bin\\t\u00e9.exe" << "" << "";
        QTest::newRow("Unicode base path of a written shortcut")
            << header(HasLinkInfo | IsUnicode) + write(make("X:\\Program Files\\kelpie\\Zembra.exe")).mid(76)
            << "X:\\Program Files\\kelpie\\Zembra.exe" << "" << "";
        QTest::newRow("environment block when nothing else names a target")
            << header(HasExpString | IsUnicode) + environmentBlockFor("%SystemRoot%\\notepad.exe") + terminal()
            << "%SystemRoot%\\notepad.exe" << "" << "";
        QTest::newRow("link information to be ignored is skipped")
            << header(HasLinkInfo | ForceNoLinkInfo | IsUnicode) + ansiLinkInfo("C:\\a.exe", "") + terminal() << "" << "" << "";
        QTest::newRow("no terminal block still reads") << header(HasLinkInfo) + ansiLinkInfo("C:\\a.exe", "") << "C:\\a.exe" << "" << "";

        const auto written = [](const QString &target, const QString &folder, const QString &args) { return write(make(target, folder, args)); };
        QTest::newRow("written: program with folder and arguments") << written("X:\\Tools\\DiskEditor.exe", "X:\\Tools", "-d 0 \"two words\"")
                                                                     << "X:\\Tools\\DiskEditor.exe" << "X:\\Tools" << "-d 0 \"two words\"";
        const QString cyrillic = "E:\\\u0418\u043d\u0441\u0442\u0440";
        QTest::newRow("written: letters outside the code page")
            << written(cyrillic + "\\\u5de5\u5177.exe", cyrillic, "") << cyrillic + "\\\u5de5\u5177.exe" << cyrillic << "";
        const QString deep = "C:\\" + QString(300, 'p') + "\\t.exe";
        QTest::newRow("written: a path past 260 characters") << written(deep, "C:\\", "") << deep << "C:\\" << "";
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

    void retargetKeepsTheRest()
    {
        Link old;
        QVERIFY(read(header(HasLinkTargetIDList | HasLinkInfo | HasArguments | HasExpString | IsUnicode | 0x2000)
                         + idListFor() + ansiLinkInfo("D:\\Tools\\t.exe", "") + QByteArray("\x02\x00-\0x\0", 6)
                         + environmentBlockFor("D:\\Tools\\t.exe") + consoleBlock() + terminal(),
                     &old));
        QCOMPARE(old.target, QString("D:\\Tools\\t.exe"));

        Link moved = old;
        setTarget(&moved, "F:\\Tools\\t.exe");
        moved.workingDirectory = "F:\\Tools";
        Link back;
        QVERIFY(read(write(moved), &back));
        QCOMPARE(QStringList({back.target, back.workingDirectory, back.arguments}),
                 QStringList({"F:\\Tools\\t.exe", "F:\\Tools", "-x"}));
        QVERIFY(back.idList.isEmpty());
        QCOMPARE(back.extraData, consoleBlock());          // the target's block is gone, the rest stays
        QCOMPARE(back.flags & (HasExpString | 0x2000), quint32(0x2000));

        // Written back unchanged, a read shortcut keeps its ID list and link information.
        Link same;
        QVERIFY(read(write(old), &same));
        QCOMPARE(same.idList, old.idList);
        QCOMPARE(same.target, old.target);
    }

    void damagedFilesAreTurnedAway_data()
    {
        QTest::addColumn<QByteArray>("data");
        const QByteArray good = write(make("C:\\a.exe", "C:\\"));
        QByteArray clsid = good;
        clsid[10] = '\x55';
        QByteArray hugeString = header(HasName | IsUnicode);
        u16(&hugeString, 0xFFFF);
        QByteArray infoPastEnd = header(HasLinkInfo);
        u32(&infoPastEnd, 0x7FFFFFF0);
        QByteArray idPastEnd = header(HasLinkTargetIDList);
        u16(&idPastEnd, 0x4000);
        QTest::newRow("zero-byte shortcut of an old demo") << QByteArray();
        QTest::newRow("wrong class id") << clsid;
        QTest::newRow("string longer than the file") << hugeString;
        QTest::newRow("link information past the end") << infoPastEnd;
        QTest::newRow("ID list past the end") << idPastEnd;
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

    void everyTruncationIsSafe()
    {
        // Cut at every length and garbled at every byte: never a crash, and a target read from a
        // damaged file is never longer than the file could hold.
        const QByteArray good = header(HasLinkTargetIDList | HasLinkInfo | HasWorkingDir | IsUnicode) + idListFor()
                                + write(make("C:\\test\\a.txt")).mid(76, 0x24 + 17 + 14 + 1 + 28 + 2)
                                + QByteArray("\x03\x00", 2) + wide("C:\\").left(6) + consoleBlock() + terminal();
        Link link;
        QVERIFY(read(good, &link));
        QCOMPARE(link.target, QString("C:\\test\\a.txt"));
        int accepted = 0;
        for (int n = 0; n < good.size(); ++n) {
            Link cut;
            accepted += read(good.left(n), &cut);
            QVERIFY(cut.target.size() <= n);
        }
        QVERIFY(accepted < good.size());
        for (int i = 0; i < good.size(); ++i) {
            for (char flip : {'\xff', '\x00', '\x80'}) {
                QByteArray bad = good;
                bad[i] = flip;
                Link garbled;
                read(bad, &garbled);
                QVERIFY(garbled.target.size() <= good.size());
            }
        }
    }

    void filesAreReplacedWhole()
    {
        QTemporaryDir dir;
        const QString path = dir.path() + "/t.lnk";
        QVERIFY(writeFile(path, make("C:\\one.exe")) && writeFile(path, make("C:\\two.exe")));
        Link link;
        QVERIFY(readFile(path, &link));
        QCOMPARE(link.target, QString("C:\\two.exe"));
        QVERIFY(!writeFile(dir.path() + "/missing/t.lnk", link));
        QVERIFY(!readFile(dir.path() + "/missing/t.lnk", &link));
    }

    void simulatedStartFollowsTarget_data()
    {
        QTest::addColumn<QString>("target");     // of the started shortcut; empty: the file is no shortcut
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("linkLine");   // the journal's "link" line after the shortcut's path
        QTest::newRow("target present") << "X:\\Tools\\t.exe" << 42 << "X:\\Tools\\t.exe\t\t";
        QTest::newRow("target gone") << "X:\\Tools\\gone.exe" << 2 << "X:\\Tools\\gone.exe\t\t";
        QTest::newRow("a system program by name") << "notepad.exe" << 42 << "notepad.exe\t\t";
        QTest::newRow("shortcut to a shortcut") << "X:\\Tools\\t.lnk" << 2 << "X:\\Tools\\t.lnk\t\t";
        QTest::newRow("no shortcut inside opens as a file") << "" << 42 << "";
    }

    void simulatedStartFollowsTarget()
    {
        QFETCH(QString, target);
        QFETCH(int, code);
        QFETCH(QString, linkLine);
        TestMachine m;
        m.write("drives/X/Tools/t.exe", "MZ");
        m.write("drives/X/Tools/t.lnk", write(make("X:\\Tools\\t.exe")));
        m.write("drives/X/Desktop/a.lnk", target.isEmpty() ? "x" : write(make(target)));
        QCOMPARE(int(m.sim->shellExecute("open", "X:\\Desktop\\a.lnk", QString(), 1).code), code);
        QCOMPARE(m.journal().filter(QRegularExpression("^link\t")),
                 linkLine.isEmpty() ? QStringList() : QStringList{"link\tX:\\Desktop\\a.lnk\t" + linkLine});
    }
};

KELPIE_TEST_MAIN(TestShellLink)
#include "tst_shelllink.moc"
