#include "taskrun.h"

#include <QFileInfo>

namespace taskrun {

namespace {

// A REG_EXPAND_SZ as regedit writes it: hex(2) and the UTF-16LE bytes with the closing null.
QByteArray expandable(const QString &text)
{
    QByteArray out = "hex(2):";
    const QString withNull = text + QChar(0);
    for (int i = 0; i < withNull.size(); ++i) {
        const ushort c = withNull.at(i).unicode();
        if (i)
            out += ',';
        out += QByteArray::number(c & 0xFF, 16).rightJustified(2, '0') + ','
               + QByteArray::number(c >> 8, 16).rightJustified(2, '0');
    }
    return out;
}

QByteArray plain(const char *text)
{
    return QByteArray("\"") + text + '"';
}

} // namespace

QString pxeScriptFolder()
{
    return QStringLiteral("x:\\Program Files\\Kelpie\\Kelpie_Scripts");
}

bool isDriverFile(const QString &fileName)
{
    return QFileInfo(fileName).suffix().toUpper() == QLatin1String("INF");
}

QString driverParameters(const QString &fullPath)
{
    return QStringLiteral("\"%1\" /exit-if-ok").arg(fullPath);
}

QByteArray fileAssociationsText()
{
    struct Value {
        const char *key;
        const char *name;   // null: the default value
        QByteArray data;
    };
    const QList<Value> values = {
        {".pdf", nullptr, plain("Sumatra.pdf")},
        {".bmp", nullptr, plain("Honeyview.bmp")},
        {".jpg", nullptr, plain("Honeyview.jpg")},
        {".jxr", nullptr, plain("Honeyview.jxr")},
        {".jpeg", nullptr, plain("paint_auto_file")},
        {".jpe", nullptr, plain("Honeyview.jpe")},
        {".jfif", nullptr, plain("Honeyview.jpg")},
        {".gif", nullptr, plain("Honeyview.gif")},
        {".tif", nullptr, plain("Honeyview.tif")},
        {".tiff", nullptr, plain("Honeyview.tiff")},
        {".png", nullptr, plain("Honeyview.png")},
        {".ico", nullptr, plain("paint_auto_file")},
        {"pdffile", nullptr, plain("Text Document")},
        {"pdffile", "EditFlags", "dword:00010000"},
        {"pdffile", "FriendlyTypeName",
         expandable(QStringLiteral("@%SystemRoot%\\system32\\notepad.exe,-469"))},
        {"pdffile\\shell\\open\\command", nullptr,
         expandable(QStringLiteral("X:\\Program Files\\ADOBE\\ACROBAT5.0\\READER\\ACRORD32.EXE %1"))},
        // The underscores keep these keys out of the shell's way on purpose.
        {"pdffile\\shell\\open\\_command", nullptr,
         expandable(QStringLiteral("%SystemRoot%\\system32\\NOTEPAD.EXE %1"))},
        {"pdffile\\shell\\print\\command", nullptr,
         expandable(QStringLiteral("%SystemRoot%\\system32\\NOTEPAD.EXE /p %1"))},
        {"pdffile\\shell\\printto\\command", nullptr,
         expandable(QStringLiteral("%SystemRoot%\\system32\\notepad.exe /pt \"%1\" \"%2\" \"%3\" \"%4\""))},
        {"pdffile\\_DefaultIcon", nullptr,
         expandable(QStringLiteral("%SystemRoot%\\system32\\imageres.dll,-102"))},
        {"pdffile\\_ShellEx\\{8895b1c6-b41f-4c1c-a562-0d564250836f}", nullptr,
         plain("{1531d583-8375-4d3f-b5fb-d23bbd169f22}")},
        {"paint_auto_file", nullptr, plain("")},
        {"paint_auto_file\\shell\\edit\\command", nullptr,
         expandable(QStringLiteral("\"%systemroot%\\system32\\mspaint.exe\" \"%1\""))},
        {"paint_auto_file\\shell\\open\\command", nullptr,
         expandable(QStringLiteral("\"%systemroot%\\system32\\mspaint.exe\" \"%1\""))},
    };

    QByteArray text = "Windows Registry Editor Version 5.00\r\n";
    QByteArray key;
    for (const Value &v : values) {
        if (key != v.key) {
            key = v.key;
            text += "\r\n[HKEY_CLASSES_ROOT\\" + key + "]\r\n";
        }
        text += (v.name ? QByteArray("\"") + v.name + '"' : QByteArray("@")) + '=' + v.data + "\r\n";
    }
    return text;
}

QByteArray fileAssociationsScript()
{
    return "REG IMPORT regApp.reg\r\ndel regApp.reg\r\ndel stregapp.cmd";
}

} // namespace taskrun
