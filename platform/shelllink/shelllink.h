#pragma once
// Shortcut files (.lnk) in the Shell Link binary format, read and written without the Windows
// shell: the simulated machine, the desktop's icons, tools and tests use it. Core only.
//
// A shortcut is read into a Link; its target comes from the link information (the local base
// path and its suffix), else from the item ID list (file system items only), else from the
// environment variable block. Writing always produces a Unicode shortcut with link information,
// which both Windows and this reader resolve. Blocks of extra data that do not describe the target
// are carried over unchanged when a read shortcut is written back.

#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace shelllink {

// Flags of the header that this code sets or looks at.
enum Flag : quint32 {
    HasLinkTargetIDList = 0x1,
    HasLinkInfo = 0x2,
    HasName = 0x4,
    HasRelativePath = 0x8,
    HasWorkingDir = 0x10,
    HasArguments = 0x20,
    HasIconLocation = 0x40,
    IsUnicode = 0x80,
    ForceNoLinkInfo = 0x100,
    HasExpString = 0x200,
};

struct Link {
    quint32 flags = 0;            // as read; recomputed when written
    quint32 fileAttributes = 0;
    quint64 creationTime = 0;     // FILETIME values, kept as they stand
    quint64 accessTime = 0;
    quint64 writeTime = 0;
    quint32 fileSize = 0;
    qint32 iconIndex = 0;
    quint32 showCommand = 1;      // SW_SHOWNORMAL
    quint16 hotKey = 0;

    QString target;               // "C:\Tools\tool.exe"; empty when the link names none
    QString name;                 // the description
    QString relativePath;
    QString workingDirectory;
    QString arguments;
    QString iconLocation;

    // As read, and written back as they stand; setTarget drops them, and a Link without link
    // information is written with one made from target.
    QByteArray idList;            // the LinkTargetIDList, its size field included
    QByteArray linkInfo;          // the LinkInfo structure
    QByteArray extraData;         // extra data blocks, without the terminal block
};

// Largest file this reader accepts; a shortcut is a few hundred bytes.
constexpr int maxFileSize = 1 << 20;

// Parses a shortcut; false (and *link untouched) on anything that does not hold together.
bool read(const QByteArray &data, Link *link);
// The shortcut's bytes.
QByteArray write(const Link &link);
// Change a read shortcut's target only through setTarget, so its old ID list does not win.
// A new shortcut to target, started in workingDirectory with arguments.
Link make(const QString &target, const QString &workingDirectory = QString(),
          const QString &arguments = QString());
// Points a read shortcut at another target: the parts that describe the old target (item ID
// list, relative path, the target blocks of the extra data) are dropped.
void setTarget(Link *link, const QString &target);

// Reads the file; false when it cannot be read or is no shortcut.
bool readFile(const QString &path, Link *link);
// Writes the file through a temporary file renamed over the old one.
bool writeFile(const QString &path, const Link &link);

} // namespace shelllink
