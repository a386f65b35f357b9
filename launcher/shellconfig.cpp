#include "shellconfig.h"

#include "my_shell1/linefile.h"
#include "platform/platform.h"

#include <QStringMatcher>

namespace shellconfig {

namespace {

// The text is built only when someone collects notes: reading must stay cheap.
#define NOTE(notes, line, text)                 \
    do {                                        \
        if (notes)                              \
            (notes)->append({(line), (text)});  \
    } while (0)

// Calls f for each line of the file, numbered from 1; false if it won't open. A line that holds
// none of the keys, where they are given, comes as an empty line.
template <typename F>
bool forEachLine(const QString &drivePath, F f, const QList<QByteArray> &keys = {})
{
    QStringList lines;
    if (!linefile::readLines(sys().hostPath(drivePath), &lines, keys))
        return false;
    for (int i = 0; i < lines.size(); ++i)
        f(lines[i], i + 1);
    return true;
}

// contains(key) for the keys every line is tried against: a matcher made once skips along a
// line instead of looking at every position, which the large medium's 10,000 lines feel.
struct Key {
    explicit Key(const char *text) : text(QString::fromLatin1(text)), matcher(this->text) {}
    bool in(const QString &line) const { return matcher.indexIn(line) >= 0; }
    const QString text;
    const QStringMatcher matcher;
};

const QChar fieldSeparator = QLatin1Char('|');
// What a line of the button passes must hold; their readers skip decoding the other lines.
const char launcherKey[] = "morvaneItem=";
const char fixedHead[] = "fixedB";   // the head the five fixed-button keys share

// The fields as views into the value, for a line that keeps only some of them as text.
QVector<QStringRef> fieldViews(const QString &value)
{
    return value.splitRef(fieldSeparator, Qt::KeepEmptyParts);
}

} // namespace

QStringList splitFields(const QString &value)
{
    return value.split(fieldSeparator, Qt::KeepEmptyParts);
}

int number(const QString &field)
{
    return field.toInt(nullptr, 10);
}

int number(const QStringRef &field)
{
    return field.toInt(nullptr, 10);
}

void mainMenuLine(const QString &rawLine, int lineNo, MainMenuPass *pass, QList<ConfigNote> *notes)
{
    static const Key kToRun("toRun=");
    static const Key kVersion("version=");
    static const Key kTitle("title=");
    static const Key kWeb("web_default=");
    static const Key kMainMenu("mainMenu=");
    static const Key kSeparator("mainSeparator");
    static const Key kMenuItem("menuItem=");

    QString line = rawLine;
    // Tested before the comment sign on purpose: a commented start-up line still runs.
    if (kToRun.in(line)) {
        line.remove(kToRun.text);
        const QStringList f = splitFields(line);
        if (f.size() < 2) {
            NOTE(notes, lineNo, QStringLiteral("toRun= with %1 field(s), 2 needed: ignored").arg(f.size()));
            return;
        }
        pass->toRun.append({f.at(0), f.at(1)});
        NOTE(notes, lineNo, QStringLiteral("start-up program \"%1\" with arguments \"%2\"").arg(f.at(0), f.at(1)));
    }
    if (line.startsWith(QLatin1Char(';'))) {
        NOTE(notes, lineNo, QStringLiteral("comment"));
        return;
    }
    if (kVersion.in(line)) {
        line.remove(kVersion.text);
        pass->version = line;
        pass->hasVersion = true;
        NOTE(notes, lineNo, QStringLiteral("version \"%1\"").arg(line));
    }
    if (kTitle.in(line)) {
        line.remove(kTitle.text);
        pass->title = line;
        pass->hasTitle = true;
        NOTE(notes, lineNo, QStringLiteral("title \"%1\"").arg(line));
    }
    if (kWeb.in(line)) {
        line.remove(kWeb.text);
        pass->webDefault = line;
        pass->hasWebDefault = true;
        NOTE(notes, lineNo, QStringLiteral("web text \"%1\"").arg(line));
    }
    if (kMainMenu.in(line)) {
        line.remove(kMainMenu.text);
        const QStringList f = splitFields(line);
        if (f.size() < 3) {
            NOTE(notes, lineNo, QStringLiteral("mainMenu= with %1 field(s), 3 needed: ignored").arg(f.size()));
            return;
        }
        MenuLine m;
        m.kind = MenuLine::SubMenu;
        m.line = lineNo;
        m.id = number(f.at(0));
        m.text = f.at(1);
        m.icon = f.at(2);
        pass->menu.append(m);
        NOTE(notes, lineNo, QStringLiteral("sub-menu %1 \"%2\"").arg(QString::number(m.id), m.text));
    }
    if (kSeparator.in(line)) {
        MenuLine m;
        m.kind = MenuLine::Separator;
        m.line = lineNo;
        pass->menu.append(m);
        NOTE(notes, lineNo, QStringLiteral("separator"));
    }
    if (!kMenuItem.in(line))
        return;
    line.remove(kMenuItem.text);
    // The large medium's thousands of entries: the numbers are read from views, not copies.
    const QVector<QStringRef> f = fieldViews(line);
    if (f.size() < 7) {
        NOTE(notes, lineNo, QStringLiteral("menuItem= with %1 field(s), 7 needed: ignored").arg(f.size()));
        return;
    }
    MenuLine m;
    m.kind = MenuLine::Item;
    m.line = lineNo;
    m.parentId = number(f.at(0));
    m.id = number(f.at(1));
    m.text = f.at(2).toString();
    m.icon = f.at(3).toString();
    m.path = f.at(4).toString();
    m.params = f.at(5).toString();
    m.hint = f.at(6).toString();
    pass->menu.append(m);
    NOTE(notes, lineNo, QStringLiteral("menu entry %1 \"%2\" under %3 starts \"%4\" \"%5\"")
                            .arg(QString::number(m.id), m.text, QString::number(m.parentId), m.path,
                                 m.params));
}

void launcherLine(const QString &line, int lineNo, int *nextId, LauncherPass *pass,
                  QList<ConfigNote> *notes)
{
    static const Key kItem(launcherKey);
    if (line.startsWith(QLatin1Char(';')) || !kItem.in(line))
        return;
    const QStringList f = splitFields(QString(line).remove(kItem.text));
    if (f.size() < 6) {
        NOTE(notes, lineNo, QStringLiteral("morvaneItem= with %1 field(s), 6 needed: ignored").arg(f.size()));
        return;
    }
    LauncherLine b;
    b.line = lineNo;
    b.id = (*nextId)++;
    b.normalImage = f.at(0);
    b.nearImage = f.at(1);
    b.activeImage = f.at(2);
    b.tip = f.at(3);
    b.path = f.at(4);
    b.params = f.at(5);
    pass->buttons.append(b);
    NOTE(notes, lineNo, QStringLiteral("launcher button %1 starts \"%2\" \"%3\"").arg(QString::number(b.id), b.path, b.params));
}

void fixedLine(const QString &rawLine, int lineNo, FixedPass *pass, QList<ConfigNote> *notes)
{
    // A line without the common head holds none of the five keys, and nothing is removed from it.
    static const Key kHead(fixedHead);
    if (rawLine.startsWith(QLatin1Char(';')) || !kHead.in(rawLine))
        return;
    QString line = rawLine;
    static const QString keys[5] = {QStringLiteral("fixedB1="), QStringLiteral("fixedB2="),
                                    QStringLiteral("fixedB3="), QStringLiteral("fixedB4="),
                                    QStringLiteral("fixedB5=")};
    for (int i = 0; i < 5; ++i) {
        const QString &key = keys[i];
        if (!line.contains(key))
            continue;
        line.remove(key);
        const QStringList f = splitFields(line);
        if (f.size() < 3) {
            NOTE(notes, lineNo, QStringLiteral("%1 with %2 field(s), 3 needed: ignored").arg(key, QString::number(f.size())));
            return;
        }
        FixedButtonSetting &s = pass->buttons[i];
        s.set = true;
        s.line = lineNo;
        s.icon = f.at(0);
        s.tip = f.at(1);
        s.command = f.at(2);
        NOTE(notes, lineNo, QStringLiteral("fixed button %1 runs \"%2\"").arg(QString::number(i + 1), s.command));
    }
}

MainMenuPass readMainMenu(const QString &drivePath, QList<ConfigNote> *notes)
{
    MainMenuPass pass;
    pass.opened = forEachLine(drivePath, [&](const QString &line, int n) {
        mainMenuLine(line, n, &pass, notes);
    });
    return pass;
}

LauncherPass readLauncherButtons(const QString &drivePath, QList<ConfigNote> *notes)
{
    LauncherPass pass;
    int nextId = 1000;
    pass.opened = forEachLine(drivePath, [&](const QString &line, int n) {
        launcherLine(line, n, &nextId, &pass, notes);
    }, {QByteArray(launcherKey)});
    return pass;
}

FixedPass readFixedButtons(const QString &drivePath, QList<ConfigNote> *notes)
{
    FixedPass pass;
    pass.opened = forEachLine(drivePath, [&](const QString &line, int n) {
        fixedLine(line, n, &pass, notes);
    }, {QByteArray(fixedHead)});
    return pass;
}

} // namespace shellconfig
